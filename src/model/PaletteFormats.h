#pragma once

#include "FilePalette.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

struct ColorItem;
struct Palette;

// The file formats a palette can be exported to.
enum class PaletteFormat {
    Gpl,  // GIMP palette
    Ase,  // Adobe Swatch Exchange
    Css,  // CSS custom properties
    Json, // an array of { "name", "hex" }
    Text, // one HEX a line, no names
};

// Palettes in and out of files, as bytes: the one entry point that picks
// the format from a file's name. Nothing here touches a file.
namespace PaletteFormats {

// Larger files are refused without being read.
inline constexpr qint64 maxFileSize = 10 * 1024 * 1024;
QString tooLarge();

inline constexpr PaletteFormat allFormats[] = {PaletteFormat::Gpl, PaletteFormat::Ase, PaletteFormat::Css,
                                               PaletteFormat::Json, PaletteFormat::Text};

// "gpl", "ase", "css", "json", "txt".
QString suffix(PaletteFormat format);
// The format a file name's suffix names (any case); none for other names.
std::optional<PaletteFormat> formatForFileName(const QString &fileName);

// A palette file's bytes: .gpl, .ase, .json, and .css, .scss or .txt
// through the CSS scanner; a file with another name is read by what it
// starts with ("GIMP Palette", "ASEF") or refused. The palette takes the
// file's name (without its suffix) when the file gives it none. A file
// with no colors it can read is refused too.
FileReadResult read(const QString &fileName, const QByteArray &data);
QByteArray write(PaletteFormat format, const FilePalette &palette);

// The palette as files carry it: components rounded to 8 bits (clamped to
// 0..255), alpha left out, names cut to the longest a file may hold.
FilePalette fromPalette(const Palette &palette);
// The colors of a read palette as new entries: fresh ids, dateAdded now,
// components k/255 exactly and alpha 1.
QList<ColorItem> colorItems(const FilePalette &palette);

} // namespace PaletteFormats
