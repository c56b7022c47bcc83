#include "JsonSwatchFormat.h"

#include "JsonWriter.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

// "#RRGGBB", "#RGB", with or without the "#"; nothing else.
std::optional<ExchangeColor> readHex(QString text)
{
    text = text.trimmed();
    if (text.startsWith(u'#'))
        text.remove(0, 1);
    if (text.size() == 3)
        text = QString(text[0]).repeated(2) + QString(text[1]).repeated(2) + QString(text[2]).repeated(2);
    const auto isHexDigit = [](QChar c) {
        return c.isDigit() || (c.toLower() >= u'a' && c.toLower() <= u'f');
    };
    if (text.size() != 6 || !std::all_of(text.cbegin(), text.cend(), [&](QChar c) {
            return c.unicode() < 0x80 && isHexDigit(c);
        }))
        return std::nullopt;
    const uint value = text.toUInt(nullptr, 16);
    return ExchangeColor{{}, quint8(value >> 16), quint8(value >> 8), quint8(value)};
}

} // namespace

namespace JsonSwatchFormat {

ExchangeResult read(const QByteArray &data)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(data, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return ExchangeResult::refused(
            u"it is not valid JSON (%1 at byte %2)"_s.arg(parseError.errorString()).arg(parseError.offset));
    if (!document.isArray())
        return ExchangeResult::refused(u"it is not a JSON array of { \"name\", \"hex\" } entries"_s);
    ExchangePalette palette;
    const QJsonArray entries = document.array();
    for (const QJsonValue &entry : entries) {
        const std::optional<ExchangeColor> color = readHex(entry.toObject().value("hex"_L1).toString());
        if (!color) {
            ++palette.skippedUnreadable;
            continue;
        }
        const QString error = palette.addColor(entry.toObject().value("name"_L1).toString(), color->red,
                                               color->green, color->blue);
        if (!error.isEmpty())
            return ExchangeResult::refused(error);
    }
    return {std::move(palette), {}};
}

QByteArray write(const ExchangePalette &palette)
{
    QByteArray out;
    QBuffer buffer(&out);
    buffer.open(QIODevice::WriteOnly);
    JsonWriter writer(buffer);
    writer.beginArray();
    for (const ExchangeColor &color : palette.colors) {
        writer.beginObject();
        writer.key("name"_L1);
        writer.value(color.name);
        writer.key("hex"_L1);
        writer.value(color.hexText());
        writer.endObject();
    }
    writer.endArray();
    writer.flush();
    return out + '\n';
}

} // namespace JsonSwatchFormat
