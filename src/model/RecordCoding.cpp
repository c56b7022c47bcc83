#include "RecordCoding.h"

#include "RecordFields.h"

#include "JsonText.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace RecordCoding {

namespace {

template<typename T> Encoded encode(const QList<T> &records)
{
    QJsonArray array;
    for (const T &record : records)
        array.append(record.toJson());
    QString error;
    std::optional<QByteArray> data = JsonText::write(array, &error);
    return {std::move(data), error};
}

template<typename T> Decoded<QList<T>> decode(const QByteArray &json)
{
    QJsonParseError parseError;
    QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return {std::nullopt,
                QStringLiteral("The data is not valid JSON (%1 at offset %2)")
                    .arg(parseError.errorString())
                    .arg(parseError.offset)};
    if (!document.isArray())
        return {
            std::nullopt,
            QStringLiteral("Expected an array at the top level but found %1")
                .arg(document.isObject() ? QStringLiteral("an object") : QStringLiteral("something else"))};
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
    return encode(colors);
}

Encoded encodePalettes(const QList<Palette> &palettes)
{
    return encode(palettes);
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
