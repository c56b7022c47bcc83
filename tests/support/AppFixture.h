#pragma once

#include "app/TintwrightApp.h"
#include "picking/ColorSampler.h"
#include "ui/MainWindow.h"

#include <QPointer>
#include <QTemporaryDir>
#include <QUrl>

// A sampler that waits for the test to finish it.
class ManualSampler : public ColorSampler
{
    Q_OBJECT

public:
    using ColorSampler::ColorSampler;
    void start() override { started = true; }
    void finishWith(double red, double green, double blue) { emit colorSampled({red, green, blue, 1.0}); }
    void cancel() { emit cancelled(); }
    bool started = false;
};

// The program as its composition root builds it, over a fresh data folder,
// its window shown; picks go to a sampler the test finishes by hand.
struct AppFixture
{
    AppFixture();

    QTemporaryDir folder;
    TintwrightApp app{folder.path()};
    QPointer<ManualSampler> sampler;

    MainWindow &window() { return app.window(); }
    PaletteStorage &palettes() { return app.paletteStorage(); }
    HistoryStorage &history() { return app.historyStorage(); }
    // Selects the tab and returns its view.
    template<typename Tab> Tab *show(MenuTab tab)
    {
        window().setSelectedTab(tab);
        return qobject_cast<Tab *>(window().tab());
    }
    // Drags the files over the window and drops them; whether it took them.
    bool drop(const QList<QUrl> &urls);
};

// The clipboard's plain text.
QString clipboardText();
