#pragma once

#include "picking/ColorSampler.h"
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

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

// The clipboard's plain text.
QString clipboardText();
