#pragma once

#include "model/ColorFormats.h"

#include <QString>

#include <optional>

// The color nearest to one of a pair that gives the pair at least a WCAG
// contrast ratio: the same OKLCH hue and chroma, only the lightness moved,
// by as little as reaches the ratio once the color is rounded to 8-bit HEX.
// Lighter and darker are both tried; chroma is given up only as far as the
// color would otherwise leave sRGB.
struct PassingColor
{
    QString hex;  // "#RRGGBB", as it would be typed
    double ratio; // what the pair gives with it
};

// Nothing when no lightness reaches the ratio.
std::optional<PassingColor> nearestPassingColor(const RgbColor &color, const RgbColor &other, double ratio);
