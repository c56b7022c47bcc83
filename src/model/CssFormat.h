#pragma once

#include "ExchangePalette.h"

#include <QByteArray>
#include <QStringList>

// Colors in CSS, SCSS and plain text.
//
// Writing gives custom properties, one a color:
//
//   :root {
//     --orange: #FF8000;
//     --sky-blue: #3366CC;
//   }
//
// Reading scans the text for every #RGB and #RRGGBB value (#RGBA and
// #RRGGBBAA too, alpha dropped), rgb()/rgba() and hsl()/hsla() (through
// hslToRGB), in comma or space syntax. A color takes the name of the
// custom property (--name:) or SCSS variable ($name:) whose declaration
// holds it; other colors stay unnamed. Comments and selectors (what comes
// before a "{", such as "#fab {") are passed over; an rgb() or hsl() whose
// values cannot be read is skipped and counted.
namespace CssFormat {

ExchangeResult read(const QByteArray &data);
QByteArray write(const ExchangePalette &palette);

// The property names for a list of color names, in order, without the
// leading "--": letters lower case, accents dropped ("Grün" gives "grun"),
// runs of blanks one hyphen, anything else outside a-z, 0-9, "-" and "_"
// left out; a name left empty becomes "color", one that starts with a
// digit gets "color-" in front, and a name already taken gets "-2", "-3"...
QStringList identifiers(const QStringList &names);

} // namespace CssFormat
