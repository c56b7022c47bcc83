#pragma once

#include "picking/SampledColor.h"

#include <QObject>

// One screen-color sampling run. start() shows whatever the sampler shows
// and, exactly once, emits either colorSampled or cancelled.
class ColorSampler : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~ColorSampler() override;

    virtual void start() = 0;

signals:
    void colorSampled(const SampledColor &color);
    void cancelled();
};
