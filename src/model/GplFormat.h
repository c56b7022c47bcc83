#pragma once

#include "FilePalette.h"

#include <QByteArray>

// GIMP palettes (.gpl), as GIMP, Inkscape, Krita, Aseprite and LibreOffice
// read and write them:
//
//   GIMP Palette
//   Name: Brand
//   Columns: 2
//   #
//   255 128   0	Orange
//    51 102 204	Sky
//
// Reading takes "Name:", skips "Columns:", "#" comments and blank lines,
// and reads "R G B name" with any run of blanks or tabs between the
// fields (Aseprite's "Channels: RGBA" adds an alpha number, ignored). A
// name loses the blanks at its ends, as GIMP's does; a line without a
// name gives an unnamed color. A line that is not three numbers is skipped
// and counted; numbers outside 0..255 are clamped.
namespace GplFormat {

FileReadResult read(const QByteArray &data);
// One "R G B<TAB>name" line a color, the numbers right-aligned to three
// places as GIMP writes them. Line breaks in names become blanks.
QByteArray write(const FilePalette &palette);

} // namespace GplFormat
