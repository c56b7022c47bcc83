#pragma once

#include "FilePalette.h"

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
// Reading finds every color value in the text (see below), named
// after the custom property or SCSS variable that holds it; a palette
// exported here comes back with its names as the identifiers below.
namespace CssFormat {

FileReadResult read(const QByteArray &data);
QByteArray write(const FilePalette &palette);

// The property names for a list of color names, in order, without the
// leading "--": letters lower case, accents dropped ("Grün" gives "grun"),
// runs of blanks one hyphen, anything else outside a-z, 0-9, "-" and "_"
// left out; a name left empty becomes "color", one that starts with a
// digit gets "color-" in front, and a name already taken gets "-2", "-3"...
QStringList identifiers(const QStringList &names);

} // namespace CssFormat
