#pragma once

#include "ColorItem.h"
#include "Palette.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

// The two record files as bytes: history.json holds an array of colors,
// palettes.json an array of palettes. Decoding is strict: one bad record
// fails the whole file.
template<typename T> struct Decoded
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

Encoded encodeColors(const QList<ColorItem> &colors);
Encoded encodePalettes(const QList<Palette> &palettes);

Decoded<QList<ColorItem>> decodeColors(const QByteArray &json);
Decoded<QList<Palette>> decodePalettes(const QByteArray &json);

} // namespace RecordCoding
