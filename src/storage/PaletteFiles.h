#pragma once

#include "model/ExchangePalette.h"

#include <QByteArray>
#include <QString>

// Palette files the user imports and exports (.gpl, .ase, .css...), as
// opposed to the program's own data files.
namespace PaletteFiles {

// Reads and decodes a file to import. Only a regular file is read, and one
// larger than PaletteExchange::maxFileSize is refused before reading.
ExchangeResult read(const QString &path);

// Writes the file atomically, as the stores write theirs: either the old
// file stays or the whole new one is in place. Returns why it failed, or
// an empty text.
QString write(const QString &path, const QByteArray &data);

} // namespace PaletteFiles
