#pragma once

#include "picking/SampledColor.h"

#include <QObject>
#include <QString>

// One screen-color sampling run. start() shows whatever the sampler shows;
// afterwards, exactly once, it emits colorSampled, cancelled (the user gave
// up) or failed (the sampler cannot work here, so another may be tried).
// Before that, a sampler that lets the user pick several colors in a row
// emits colorKept for each pick but the last; a run that ends cancelled
// after some has still picked those.
class ColorSampler : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual void start() = 0;

signals:
    void colorSampled(const SampledColor &color);
    void colorKept(const SampledColor &color);
    void cancelled();
    // Cancelled by what the sampler asked rather than by the user, as far
    // as the program can tell (a portal's "other" answer): said in a line.
    void endedWithoutColor(const QString &why);
    void failed(const QString &reason);
};
