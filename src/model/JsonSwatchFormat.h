#pragma once

#include "FilePalette.h"

#include <QByteArray>

// A JSON array of { "name", "hex" } objects, the hex as "#RRGGBB":
//
//   [
//     {
//       "name": "Orange",
//       "hex": "#FF8000"
//     }
//   ]
//
// Reading also takes "#RGB" and hex without the "#"; an entry that is not
// such an object, or whose hex cannot be read, is skipped and counted. A
// missing name leaves the color unnamed.
namespace JsonSwatchFormat {

FileReadResult read(const QByteArray &data);
QByteArray write(const FilePalette &palette);

} // namespace JsonSwatchFormat
