#pragma once

#include "ColorItem.h"
#include "Palette.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

// The on-disk record format of colors and palettes: pretty-printed JSON,
// keys in field order, upper-case hyphenated UUIDs, UTC dates in whole
// seconds with a "Z", doubles written as their shortest exact text.
// Decoding is strict: one bad record fails the whole file.
template<typename T>
struct Decoded
{
    std::optional<T> value;
    QString error; // set when value is empty
};

struct Encoded
{
    std::optional<QByteArray> data;
    QString error; // set when data is empty
};

namespace RecordCoding {

QString uuidText(const QUuid &id);
QString dateText(const QDateTime &date);
// Only the exact form yyyy-MM-ddTHH:mm:ssZ is a date; anything else is not.
std::optional<QDateTime> parseDate(const QString &text);

Encoded encodeColors(const QList<ColorItem> &colors);
Encoded encodePalettes(const QList<Palette> &palettes);
// One palette's record as it stands in the palettes array, and the array
// joined from such records: the same bytes as encodePalettes(), for callers
// that keep the records of unchanged palettes between saves.
std::optional<QByteArray> encodePaletteElement(const Palette &palette);
Encoded joinPaletteElements(const QList<QByteArray> &elements);
Decoded<QList<ColorItem>> decodeColors(const QByteArray &json);
Decoded<QList<Palette>> decodePalettes(const QByteArray &json);

} // namespace RecordCoding
