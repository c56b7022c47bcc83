#pragma once

#include "ColorItem.h"
#include "JsonWriter.h"
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

// The whole file, into a writer; a value that cannot be encoded is left in
// writer.error().
template<typename T> void write(const QList<T> &records, JsonWriter &writer)
{
    writer.beginArray();
    for (const T &record : records)
        record.write(writer);
    writer.endArray();
}

// The whole file, in memory.
Encoded encodeColors(const QList<ColorItem> &colors);
Encoded encodePalettes(const QList<Palette> &palettes);

Decoded<QList<ColorItem>> decodeColors(const QByteArray &json);
Decoded<QList<Palette>> decodePalettes(const QByteArray &json);

} // namespace RecordCoding
