#pragma once

#include "model/ColorFormats.h"

#include <QString>

// APCA lightness contrast (APCA-W3 0.0.98G-4g, the constants of the
// reference implementation 0.1.9), the measure the WCAG 3 drafts use.
// Unlike the WCAG 2 ratio it depends on which color is the text: positive
// for dark text on a light background, negative for light text on dark.
namespace Apca {

// Lc, about -108 to 106; 0 where the two are too close to tell apart.
double contrast(const RgbColor &text, const RgbColor &background);

// "Lc 63.1", "Lc -68.5": its sign and one decimal.
QString text(double lc);

// What the contrast allows, by the magnitude shown: "Preferred body text"
// (90 and above), "Body text" (75), "Content text" (60), "Large text" (45),
// "Spot text" (30), "Non-text" (15), else "Not readable".
QString use(double lc);

} // namespace Apca
