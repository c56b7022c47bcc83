#pragma once

#include "picking/SampledColor.h"

#include <QObject>
#include <QString>

// One screen-color sampling run. start() shows whatever the sampler shows;
// afterwards, exactly once, it emits colorSampled, cancelled (the user gave
// up) or failed (the sampler cannot work here, so another may be tried).
class ColorSampler : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual void start() = 0;

signals:
    void colorSampled(const SampledColor &color);
    void cancelled();
    void failed(const QString &reason);
};
