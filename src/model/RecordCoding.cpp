#include "RecordCoding.h"

#include "JsonWriter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <cmath>

namespace RecordCoding {

namespace {

// Thrown inside the decoder only, turned into the error text at its edge.
struct DecodeFailure
{
    QString message;
};

[[noreturn]] void fail(const QString &path, const QString &what)
{
    throw DecodeFailure{path.isEmpty() ? what : QStringLiteral("%1 at %2").arg(what, path)};
}

QString typeName(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Null: return QStringLiteral("null");
    case QJsonValue::Bool: return QStringLiteral("a boolean");
    case QJsonValue::Double: return QStringLiteral("a number");
    case QJsonValue::String: return QStringLiteral("a string");
    case QJsonValue::Array: return QStringLiteral("an array");
    case QJsonValue::Object: return QStringLiteral("an object");
    case QJsonValue::Undefined: break;
    }
    return QStringLiteral("nothing");
}

QJsonValue field(const QJsonObject &object, const QString &key, const QString &path)
{
    const auto it = object.constFind(key);
    if (it == object.constEnd())
        fail(path, QStringLiteral("No value for key \"%1\"").arg(key));
    return it.value();
}

QString stringField(const QJsonObject &object, const QString &key, const QString &path)
{
    const QJsonValue value = field(object, key, path);
    if (!value.isString())
        fail(path, QStringLiteral("Expected a string for \"%1\" but found %2").arg(key, typeName(value)));
    return value.toString();
}

double numberField(const QJsonObject &object, const QString &key, const QString &path)
{
    const QJsonValue value = field(object, key, path);
    if (!value.isDouble())
        fail(path, QStringLiteral("Expected a number for \"%1\" but found %2").arg(key, typeName(value)));
    const double number = value.toDouble();
    if (!std::isfinite(number))
        fail(path, QStringLiteral("The number for \"%1\" does not fit in a double").arg(key));
    return number;
}

QUuid uuidField(const QJsonObject &object, const QString &key, const QString &path)
{
    const QString text = stringField(object, key, path);
    static const QRegularExpression form(QStringLiteral(
        "^[0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{12}$"));
    if (!form.match(text).hasMatch())
        fail(path, QStringLiteral("Invalid UUID string for \"%1\": %2").arg(key, text.left(64)));
    return QUuid::fromString(text);
}

QDateTime dateField(const QJsonObject &object, const QString &key, const QString &path)
{
    const QString text = stringField(object, key, path);
    const std::optional<QDateTime> date = parseDate(text);
    if (!date)
        fail(path, QStringLiteral("Expected date string to be ISO8601-formatted for \"%1\": %2")
                       .arg(key, text.left(64)));
    return *date;
}

QJsonArray topArray(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        fail({}, QStringLiteral("The data is not valid JSON (%1 at offset %2)")
                     .arg(error.errorString())
                     .arg(error.offset));
    if (!document.isArray())
        fail({}, QStringLiteral("Expected an array at the top level but found %1")
                     .arg(document.isObject() ? QStringLiteral("an object") : QStringLiteral("something else")));
    return document.array();
}

QJsonObject objectAt(const QJsonValue &value, const QString &path)
{
    if (!value.isObject())
        fail(path, QStringLiteral("Expected an object but found %1").arg(typeName(value)));
    return value.toObject();
}

ColorItem decodeColor(const QJsonValue &value, const QString &path)
{
    const QJsonObject object = objectAt(value, path);
    ColorItem item;
    item.id = uuidField(object, QStringLiteral("id"), path);
    item.name = stringField(object, QStringLiteral("name"), path);
    item.red = numberField(object, QStringLiteral("red"), path);
    item.green = numberField(object, QStringLiteral("green"), path);
    item.blue = numberField(object, QStringLiteral("blue"), path);
    item.alpha = numberField(object, QStringLiteral("alpha"), path);
    item.dateAdded = dateField(object, QStringLiteral("dateAdded"), path);
    return item;
}

Palette decodePalette(const QJsonValue &value, const QString &path)
{
    const QJsonObject object = objectAt(value, path);
    Palette palette;
    palette.id = uuidField(object, QStringLiteral("id"), path);
    palette.name = stringField(object, QStringLiteral("name"), path);
    const QJsonValue colors = field(object, QStringLiteral("colors"), path);
    if (!colors.isArray())
        fail(path, QStringLiteral("Expected an array for \"colors\" but found %1").arg(typeName(colors)));
    const QJsonArray array = colors.toArray();
    palette.colors.reserve(array.size());
    for (qsizetype i = 0; i < array.size(); ++i)
        palette.colors.append(decodeColor(array.at(i), QStringLiteral("%1.colors[%2]").arg(path).arg(i)));
    palette.dateCreated = dateField(object, QStringLiteral("dateCreated"), path);
    return palette;
}

template<typename T, typename DecodeOne>
Decoded<QList<T>> decodeList(const QByteArray &json, DecodeOne decodeOne)
{
    try {
        const QJsonArray array = topArray(json);
        QList<T> list;
        list.reserve(array.size());
        for (qsizetype i = 0; i < array.size(); ++i)
            list.append(decodeOne(array.at(i), QStringLiteral("[%1]").arg(i)));
        return {std::move(list), {}};
    } catch (const DecodeFailure &failure) {
        return {std::nullopt, failure.message};
    }
}

bool writeColor(JsonWriter &writer, const ColorItem &item)
{
    writer.beginObject();
    writer.key(QStringLiteral("id"));
    writer.value(uuidText(item.id));
    writer.key(QStringLiteral("name"));
    writer.value(item.name);
    const std::pair<const char *, double> components[] = {
        {"red", item.red}, {"green", item.green}, {"blue", item.blue}, {"alpha", item.alpha}};
    for (const auto &[key, number] : components) {
        writer.key(QString::fromLatin1(key));
        if (!writer.value(number))
            return false;
    }
    writer.key(QStringLiteral("dateAdded"));
    writer.value(dateText(item.dateAdded));
    writer.endObject();
    return true;
}

const QString notFinite = QStringLiteral("Unable to encode a color component that is not a finite number");

} // namespace

QString uuidText(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

QString dateText(const QDateTime &date)
{
    return date.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")) + u'Z';
}

std::optional<QDateTime> parseDate(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("^(\\d{4})-(\\d{2})-(\\d{2})T(\\d{2}):(\\d{2}):(\\d{2})Z$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const QDate day(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
    const QTime time(match.captured(4).toInt(), match.captured(5).toInt(), match.captured(6).toInt());
    if (!day.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(day, time, Qt::UTC);
}

Encoded encodeColors(const QList<ColorItem> &colors)
{
    JsonWriter writer;
    writer.beginArray();
    for (const ColorItem &item : colors) {
        if (!writeColor(writer, item))
            return {std::nullopt, notFinite};
    }
    writer.endArray();
    return {writer.data(), {}};
}

Encoded encodePalettes(const QList<Palette> &palettes)
{
    JsonWriter writer;
    writer.beginArray();
    for (const Palette &palette : palettes) {
        writer.beginObject();
        writer.key(QStringLiteral("id"));
        writer.value(uuidText(palette.id));
        writer.key(QStringLiteral("name"));
        writer.value(palette.name);
        writer.key(QStringLiteral("colors"));
        writer.beginArray();
        for (const ColorItem &item : palette.colors) {
            if (!writeColor(writer, item))
                return {std::nullopt, notFinite};
        }
        writer.endArray();
        writer.key(QStringLiteral("dateCreated"));
        writer.value(dateText(palette.dateCreated));
        writer.endObject();
    }
    writer.endArray();
    return {writer.data(), {}};
}

Decoded<QList<ColorItem>> decodeColors(const QByteArray &json)
{
    return decodeList<ColorItem>(json, decodeColor);
}

Decoded<QList<Palette>> decodePalettes(const QByteArray &json)
{
    return decodeList<Palette>(json, decodePalette);
}

} // namespace RecordCoding
