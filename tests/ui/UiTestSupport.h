#pragma once

#include "picking/ColorSampler.h"
#include "picking/TintwrightService.h"
#include "storage/ContrastStorage.h"
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

#include <QPointer>
#include <QTemporaryDir>
#include <QWidget>

// A sampler that waits for the test to finish it.
class ManualSampler : public ColorSampler
{
    Q_OBJECT

public:
    using ColorSampler::ColorSampler;
    void start() override { started = true; }
    void finishWith(double red, double green, double blue) { emit colorSampled(SampledColor{red, green, blue, 1.0}); }
    void cancel() { emit cancelled(); }
    bool started = false;
};

// The four shared objects over a fresh data folder, with a service whose
// picks the test finishes by hand.
struct SharedObjects
{
    SharedObjects();

    // The sampler of the pick under way, if any.
    ManualSampler *sampler() const { return lastSampler; }

    QTemporaryDir folder;
    PaletteStorage paletteStorage;
    HistoryStorage historyStorage;
    ContrastStorage contrastStorage;
    TintwrightService tintwrightService;
    QPointer<ManualSampler> lastSampler;
};

// The clipboard's plain text.
QString clipboardText();

// The child with this object name that is visible within root, or null.
template<typename T>
T *findShown(const QWidget *root, const QString &objectName = QString())
{
    for (T *child : root->findChildren<T *>(objectName))
        if (child->isVisibleTo(root))
            return child;
    return nullptr;
}

// Every text shown by a QLabel visible within root.
QStringList shownTexts(const QWidget *root);
