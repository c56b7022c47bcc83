#pragma once

#include "model/ColorFormats.h"

#include <QString>

// How a color looks to someone with a color-vision deficiency: the three
// dichromacies as Machado, Oliveira and Fernandes (2009) model them at full
// severity, and achromatopsia as plain luminance.
namespace ColorVision {

enum class Deficiency { Protanopia, Deuteranopia, Tritanopia, Achromatopsia };

inline constexpr Deficiency all[] = {Deficiency::Protanopia, Deficiency::Deuteranopia, Deficiency::Tritanopia,
                                     Deficiency::Achromatopsia};

// "Protanopia", ...
QString name(Deficiency deficiency);

// The color as seen, in sRGB, each component in 0..1.
RgbColor simulate(Deficiency deficiency, const RgbColor &color);

} // namespace ColorVision
