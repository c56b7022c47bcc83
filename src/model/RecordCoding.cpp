#include "RecordCoding.h"

#include "JsonWriter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace RecordCoding {

namespace {

// Thrown inside the decoder only, turned into the error text at its edge.
struct DecodeFailure
{
    QString message;
};

// Where in the file a record stands, spelled out only when it fails: making
// the text for every record would cost more than decoding it.
struct Where
{
    qsizetype index = -1;      // in the top-level array
    qsizetype colorIndex = -1; // in a palette's colors

    QString text() const
    {
        if (index < 0)
            return {};
        QString path = QStringLiteral("[%1]").arg(index);
        if (colorIndex >= 0)
            path += QStringLiteral(".colors[%1]").arg(colorIndex);
        return path;
    }
};

[[noreturn]] void fail(const Where &where, const QString &what)
{
    const QString path = where.text();
    throw DecodeFailure{path.isEmpty() ? what : QStringLiteral("%1 at %2").arg(what, path)};
}

bool isHexDigit(char16_t c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

// 8-4-4-4-12 hexadecimal digits with hyphens, either case.
bool isUuidText(QStringView text)
{
    if (text.size() != 36)
        return false;
    for (qsizetype i = 0; i < 36; ++i) {
        const char16_t c = text[i].unicode();
        if (i == 8 || i == 13 || i == 18 || i == 23) {
            if (c != u'-')
                return false;
        } else if (!isHexDigit(c)) {
            return false;
        }
    }
    return true;
}

// The UUID's text form, upper case, into 36 chars.
void writeUuid(const QUuid &id, char *out)
{
    static constexpr char digits[] = "0123456789ABCDEF";
    const auto hex = [&out](quint64 value, int count) {
        for (int shift = (count - 1) * 4; shift >= 0; shift -= 4)
            *out++ = digits[(value >> shift) & 0xF];
    };
    hex(id.data1, 8);
    *out++ = '-';
    hex(id.data2, 4);
    *out++ = '-';
    hex(id.data3, 4);
    *out++ = '-';
    hex(id.data4[0], 2);
    hex(id.data4[1], 2);
    *out++ = '-';
    for (int i = 2; i < 8; ++i)
        hex(id.data4[i], 2);
}

// yyyy-MM-ddTHH:mm:ssZ into 20 chars, for years 1 to 9999; false otherwise
// (the slow general path takes those).
bool writeDate(const QDateTime &date, char *out)
{
    if (!date.isValid())
        return false;
    const qint64 msecs = date.toMSecsSinceEpoch();
    // Whole seconds, rounded down also before 1970.
    const qint64 secs = msecs / 1000 - (msecs % 1000 < 0 ? 1 : 0);
    qint64 days = secs / 86400;
    qint64 daySecs = secs % 86400;
    if (daySecs < 0) {
        daySecs += 86400;
        --days;
    }
    // Civil date from days since 1970-01-01 (proleptic Gregorian).
    const qint64 z = days + 719468;
    const qint64 era = (z >= 0 ? z : z - 146096) / 146097;
    const qint64 doe = z - era * 146097;
    const qint64 yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const qint64 doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const qint64 mp = (5 * doy + 2) / 153;
    const qint64 day = doy - (153 * mp + 2) / 5 + 1;
    const qint64 month = mp < 10 ? mp + 3 : mp - 9;
    const qint64 year = yoe + era * 400 + (month <= 2 ? 1 : 0);
    if (year < 1 || year > 9999)
        return false;
    const auto two = [&out](qint64 value) {
        *out++ = char('0' + value / 10);
        *out++ = char('0' + value % 10);
    };
    two(year / 100);
    two(year % 100);
    *out++ = '-';
    two(month);
    *out++ = '-';
    two(day);
    *out++ = 'T';
    two(daySecs / 3600);
    *out++ = ':';
    two(daySecs / 60 % 60);
    *out++ = ':';
    two(daySecs % 60);
    *out = 'Z';
    return true;
}

QString typeName(QJsonValue::Type type)
{
    switch (type) {
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

// A reference into the document: no copy of the value until it is used.
QJsonValueConstRef field(const QJsonObject &object, QLatin1StringView key, const Where &path)
{
    const auto it = object.constFind(key);
    if (it == object.constEnd())
        fail(path, QStringLiteral("No value for key \"%1\"").arg(key));
    return it.value();
}

QString stringField(const QJsonObject &object, QLatin1StringView key, const Where &path)
{
    const QJsonValueConstRef value = field(object, key, path);
    if (!value.isString())
        fail(path, QStringLiteral("Expected a string for \"%1\" but found %2").arg(key, typeName(value.type())));
    return value.toString();
}

double numberField(const QJsonObject &object, QLatin1StringView key, const Where &path)
{
    const QJsonValueConstRef value = field(object, key, path);
    if (!value.isDouble())
        fail(path, QStringLiteral("Expected a number for \"%1\" but found %2").arg(key, typeName(value.type())));
    const double number = value.toDouble();
    if (!std::isfinite(number))
        fail(path, QStringLiteral("The number for \"%1\" does not fit in a double").arg(key));
    return number;
}

QUuid uuidField(const QJsonObject &object, QLatin1StringView key, const Where &path)
{
    const QString text = stringField(object, key, path);
    if (!isUuidText(text))
        fail(path, QStringLiteral("Invalid UUID string for \"%1\": %2").arg(key, text.left(64)));
    return QUuid::fromString(text);
}

QDateTime dateField(const QJsonObject &object, QLatin1StringView key, const Where &path)
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

QJsonObject objectAt(QJsonValueConstRef value, const Where &path)
{
    if (!value.isObject())
        fail(path, QStringLiteral("Expected an object but found %1").arg(typeName(value.type())));
    return value.toObject();
}

ColorItem decodeColor(QJsonValueConstRef value, const Where &path)
{
    const QJsonObject object = objectAt(value, path);
    ColorItem item;
    item.id = uuidField(object, QLatin1StringView("id"), path);
    item.name = stringField(object, QLatin1StringView("name"), path);
    item.red = numberField(object, QLatin1StringView("red"), path);
    item.green = numberField(object, QLatin1StringView("green"), path);
    item.blue = numberField(object, QLatin1StringView("blue"), path);
    item.alpha = numberField(object, QLatin1StringView("alpha"), path);
    item.dateAdded = dateField(object, QLatin1StringView("dateAdded"), path);
    return item;
}

Palette decodePalette(QJsonValueConstRef value, const Where &path)
{
    const QJsonObject object = objectAt(value, path);
    Palette palette;
    palette.id = uuidField(object, QLatin1StringView("id"), path);
    palette.name = stringField(object, QLatin1StringView("name"), path);
    const QJsonValueConstRef colors = field(object, QLatin1StringView("colors"), path);
    if (!colors.isArray())
        fail(path, QStringLiteral("Expected an array for \"colors\" but found %1").arg(typeName(colors.type())));
    const QJsonArray array = colors.toArray();
    palette.colors.reserve(array.size());
    qsizetype i = 0;
    for (auto it = array.constBegin(); it != array.constEnd(); ++it, ++i)
        palette.colors.append(decodeColor(*it, Where{path.index, i}));
    palette.dateCreated = dateField(object, QLatin1StringView("dateCreated"), path);
    return palette;
}

template<typename T, typename DecodeOne>
Decoded<QList<T>> decodeList(const QByteArray &json, DecodeOne decodeOne)
{
    try {
        const QJsonArray array = topArray(json);
        QList<T> list;
        list.reserve(array.size());
        qsizetype i = 0;
        for (auto it = array.constBegin(); it != array.constEnd(); ++it, ++i)
            list.append(decodeOne(*it, Where{i}));
        return {std::move(list), {}};
    } catch (const DecodeFailure &failure) {
        return {std::nullopt, failure.message};
    }
}

void writeUuidField(JsonWriter &writer, const QUuid &id)
{
    char text[36];
    writeUuid(id, text);
    writer.key(QLatin1StringView("id"));
    writer.value(QLatin1StringView(text, 36));
}

void writeDateField(JsonWriter &writer, QLatin1StringView key, const QDateTime &date)
{
    writer.key(key);
    char text[20];
    if (writeDate(date, text))
        writer.value(QLatin1StringView(text, 20));
    else
        writer.value(dateText(date));
}

// Roughly what one color takes in the file, to size the buffer up front.
constexpr qsizetype bytesPerColor = 300;

bool writeColor(JsonWriter &writer, const ColorItem &item)
{
    writer.beginObject();
    writeUuidField(writer, item.id);
    writer.key(QLatin1StringView("name"));
    writer.value(item.name);
    const std::pair<QLatin1StringView, double> components[] = {{QLatin1StringView("red"), item.red},
                                                               {QLatin1StringView("green"), item.green},
                                                               {QLatin1StringView("blue"), item.blue},
                                                               {QLatin1StringView("alpha"), item.alpha}};
    for (const auto &[key, number] : components) {
        writer.key(key);
        if (!writer.value(number))
            return false;
    }
    writeDateField(writer, QLatin1StringView("dateAdded"), item.dateAdded);
    writer.endObject();
    return true;
}

const QString notFinite = QStringLiteral("Unable to encode a color component that is not a finite number");

} // namespace

QString uuidText(const QUuid &id)
{
    char text[36];
    writeUuid(id, text);
    return QString::fromLatin1(text, 36);
}

QString dateText(const QDateTime &date)
{
    return date.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")) + u'Z';
}

std::optional<QDateTime> parseDate(const QString &text)
{
    // Exactly yyyy-MM-ddTHH:mm:ssZ, ASCII digits only.
    static constexpr char16_t form[] = u"dddd-dd-ddTdd:dd:ddZ";
    if (text.size() != 20)
        return std::nullopt;
    for (qsizetype i = 0; i < 20; ++i) {
        const char16_t c = text[i].unicode();
        if (form[i] == u'd' ? (c < u'0' || c > u'9') : c != form[i])
            return std::nullopt;
    }
    const auto number = [&text](qsizetype from, qsizetype length) {
        int value = 0;
        for (qsizetype i = from; i < from + length; ++i)
            value = value * 10 + (text[i].unicode() - u'0');
        return value;
    };
    const QDate day(number(0, 4), number(5, 2), number(8, 2));
    const QTime time(number(11, 2), number(14, 2), number(17, 2));
    if (!day.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(day, time, Qt::UTC);
}

Encoded encodeColors(const QList<ColorItem> &colors)
{
    JsonWriter writer;
    writer.reserve(colors.size() * bytesPerColor + 16);
    writer.beginArray();
    for (const ColorItem &item : colors) {
        if (!writeColor(writer, item))
            return {std::nullopt, notFinite};
    }
    writer.endArray();
    return {writer.takeData(), {}};
}

namespace {

bool writePalette(JsonWriter &writer, const Palette &palette)
{
    writer.beginObject();
    writeUuidField(writer, palette.id);
    writer.key(QLatin1StringView("name"));
    writer.value(palette.name);
    writer.key(QLatin1StringView("colors"));
    writer.beginArray();
    for (const ColorItem &item : palette.colors) {
        if (!writeColor(writer, item))
            return false;
    }
    writer.endArray();
    writeDateField(writer, QLatin1StringView("dateCreated"), palette.dateCreated);
    writer.endObject();
    return true;
}

} // namespace

Encoded encodePalettes(const QList<Palette> &palettes)
{
    qsizetype colorCount = 0;
    for (const Palette &palette : palettes)
        colorCount += palette.colors.size();
    JsonWriter writer;
    writer.reserve(colorCount * bytesPerColor + palettes.size() * 300 + 16);
    writer.beginArray();
    for (const Palette &palette : palettes) {
        if (!writePalette(writer, palette))
            return {std::nullopt, notFinite};
    }
    writer.endArray();
    return {writer.takeData(), {}};
}

std::optional<QByteArray> encodePaletteElement(const Palette &palette)
{
    JsonWriter writer = JsonWriter::insideArray(1);
    writer.reserve(palette.colors.size() * bytesPerColor + 300);
    if (!writePalette(writer, palette))
        return std::nullopt;
    return writer.takeData();
}

Encoded joinPaletteElements(const QList<QByteArray> &elements)
{
    qsizetype size = 16;
    for (const QByteArray &element : elements)
        size += element.size() + 4;
    JsonWriter writer;
    writer.reserve(size);
    writer.beginArray();
    for (const QByteArray &element : elements)
        writer.rawValue(element);
    writer.endArray();
    return {writer.takeData(), {}};
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
