#pragma once

#include "picking/ColorSampler.h"

#include <QString>

// A sampler that may find it cannot work here (no portal, no readable
// screen). Exactly once it emits colorSampled, cancelled or failed; failed
// carries a short reason and lets the caller try another sampler.
class FallibleColorSampler : public ColorSampler
{
    Q_OBJECT

public:
    using ColorSampler::ColorSampler;
    ~FallibleColorSampler() override;

signals:
    void failed(const QString &reason);
};
