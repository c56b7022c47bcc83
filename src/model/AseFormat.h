#pragma once

#include "FilePalette.h"

#include <QByteArray>

// Adobe Swatch Exchange (.ase), version 1.0, big-endian throughout:
//
//   "ASEF", version 1 and 0 (two 16-bit numbers), the block count (32-bit)
//   then blocks: type (16-bit), length of what follows (32-bit), data.
//     0xC001 group start: name
//     0xC002 group end:   nothing
//     0x0001 color:       name, model ("RGB ", "CMYK", "Gray", "LAB "),
//                         its values as 32-bit floats, color type (16-bit)
//   A name is its length in UTF-16 units counting the terminating zero,
//   then the UTF-16BE text and that zero.
//
// Reading takes RGB, Gray and CMYK colors (CMYK through cmykToRGB), skips
// and counts LAB ones, accepts files with or without groups (the first
// group names the palette) and refuses a file whose counts or lengths run
// past its end. Writing puts every color, as RGB of value k/255 and type
// global, into one group named after the palette.
namespace AseFormat {

FileReadResult read(const QByteArray &data);
QByteArray write(const FilePalette &palette);

} // namespace AseFormat
