#pragma once

#include "picking/ColorSampler.h"
#include "picking/TintwrightService.h"
#include "storage/ContrastStorage.h"
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"
#include "ui/MainWindow.h"
#include "ui/PalettesTab.h"

#include <QTemporaryDir>

// A sampler that waits for the test to finish it.
class ManualSampler : public ColorSampler
{
    Q_OBJECT

public:
    using ColorSampler::ColorSampler;
    void start() override { started = true; }
    void finishWith(double red, double green, double blue)
    {
        emit colorSampled(SampledColor{red, green, blue, 1.0});
    }
    void cancel() { emit cancelled(); }
    bool started = false;
};

// The palette and history stores over a fresh data folder.
struct SharedObjects
{
    SharedObjects();

    QTemporaryDir folder;
    PaletteStorage paletteStorage;
    HistoryStorage historyStorage;
};

// The window over fresh stores, showing the Palettes tab with one palette.
struct Window
{
    SharedObjects shared;
    TintwrightService service;
    ContrastStorage contrast;
    MainWindow window{service, shared.paletteStorage, shared.historyStorage, contrast};
    Palette brand = shared.paletteStorage.createPalette(QStringLiteral("Brand"));

    Window()
    {
        shared.paletteStorage.addColor(ColorItem::create(QStringLiteral("Sky Blue"), 0.2, 0.4, 0.8),
                                       brand.id);
        window.setSelectedTab(MenuTab::Palettes);
        window.show();
    }
    PalettesTab *tab() { return qobject_cast<PalettesTab *>(window.tab()); }
    // Drags the files over the window and drops them; whether it took them.
    bool drop(const QList<QUrl> &urls);
};

// The clipboard's plain text.
QString clipboardText();
