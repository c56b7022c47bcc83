#include "RecordCoding.h"

#include "JsonWriter.h"
#include "RecordFields.h"

#include <QJsonDocument>

namespace RecordCoding {

namespace {

// Roughly what one color takes in the file, to size the buffer up front.
constexpr qsizetype bytesPerColor = 300;

template<typename T>
Encoded encode(const QList<T> &records, qsizetype colorCount)
{
    JsonWriter writer(colorCount * bytesPerColor + records.size() * 200 + 16);
    writer.beginArray();
    for (const T &record : records)
        record.write(writer);
    writer.endArray();
    if (!writer.error().isEmpty())
        return {std::nullopt, writer.error()};
    return {writer.takeData(), {}};
}

template<typename T>
Decoded<QList<T>> decode(const QByteArray &json)
{
    QJsonParseError parseError;
    QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return {std::nullopt, QStringLiteral("The data is not valid JSON (%1 at offset %2)")
                                  .arg(parseError.errorString())
                                  .arg(parseError.offset)};
    if (!document.isArray())
        return {std::nullopt, QStringLiteral("Expected an array at the top level but found %1")
                                  .arg(document.isObject() ? QStringLiteral("an object")
                                                           : QStringLiteral("something else"))};
    QJsonArray records = document.array();
    document = QJsonDocument(); // leaves the array its only holder
    try {
        return {RecordFields::list<T>(std::move(records), {}, true), {}};
    } catch (const RecordError &error) {
        return {std::nullopt, QStringLiteral("%1 at %2").arg(error.message, error.where)};
    }
}

} // namespace

Encoded encodeColors(const QList<ColorItem> &colors)
{
    return encode(colors, colors.size());
}

Encoded encodePalettes(const QList<Palette> &palettes)
{
    qsizetype colorCount = 0;
    for (const Palette &palette : palettes)
        colorCount += palette.colors.size();
    return encode(palettes, colorCount);
}

Decoded<QList<ColorItem>> decodeColors(const QByteArray &json)
{
    return decode<ColorItem>(json);
}

Decoded<QList<Palette>> decodePalettes(const QByteArray &json)
{
    return decode<Palette>(json);
}

} // namespace RecordCoding
