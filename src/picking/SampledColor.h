#pragma once

// A color as a sampler delivers it: sRGB components in full precision,
// unclamped, with its alpha.
struct SampledColor
{
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    double alpha = 1.0;

    friend bool operator==(const SampledColor &, const SampledColor &) = default;
};
