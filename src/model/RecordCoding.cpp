#include "RecordCoding.h"

#include "JsonWriter.h"

#include "JsonCursor.h"
#include "JsonSyntax.h"

#include <algorithm>
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

QString typeName(JsonCursor::Kind kind)
{
    switch (kind) {
    case JsonCursor::Kind::Null: return QStringLiteral("null");
    case JsonCursor::Kind::Bool: return QStringLiteral("a boolean");
    case JsonCursor::Kind::Number: return QStringLiteral("a number");
    case JsonCursor::Kind::String: return QStringLiteral("a string");
    case JsonCursor::Kind::Array: return QStringLiteral("an array");
    case JsonCursor::Kind::Object: return QStringLiteral("an object");
    }
    return QStringLiteral("nothing");
}

// The fields of a record are gathered first and read afterwards in field
// order, so that a later duplicate key wins and a record with several
// faults always reports the same one, whatever order its keys stand in.
template<int Count>
struct Members
{
    qsizetype offsets[Count];

    Members() { std::fill(std::begin(offsets), std::end(offsets), -1); }
};

template<int Count>
Members<Count> gatherMembers(JsonCursor &cursor, const QLatin1StringView (&keys)[Count])
{
    Members<Count> members;
    cursor.enter();
    while (cursor.nextMember()) {
        for (int i = 0; i < Count; ++i) {
            if (cursor.keyIs(keys[i])) {
                members.offsets[i] = cursor.offset();
                break;
            }
        }
        cursor.skip();
    }
    return members;
}

// Puts the cursor on a member's value, back where it was when destroyed.
class MemberReader
{
public:
    MemberReader(JsonCursor &cursor, qsizetype offset, QLatin1StringView key, const Where &path)
        : m_cursor(cursor), m_resume(cursor.offset()), m_key(key), m_path(path)
    {
        if (offset < 0)
            fail(path, QStringLiteral("No value for key \"%1\"").arg(key));
        cursor.seek(offset);
    }
    ~MemberReader() { m_cursor.seek(m_resume); }

    void expect(JsonCursor::Kind kind, const char *what) const
    {
        const JsonCursor::Kind found = m_cursor.kind();
        if (found != kind)
            fail(m_path, QStringLiteral("Expected %1 for \"%2\" but found %3")
                             .arg(QLatin1StringView(what), m_key, typeName(found)));
    }

private:
    JsonCursor &m_cursor;
    qsizetype m_resume;
    QLatin1StringView m_key;
    const Where &m_path;
};

QString stringMember(JsonCursor &cursor, qsizetype offset, QLatin1StringView key, const Where &path)
{
    const MemberReader reader(cursor, offset, key, path);
    reader.expect(JsonCursor::Kind::String, "a string");
    return cursor.string();
}

double numberMember(JsonCursor &cursor, qsizetype offset, QLatin1StringView key, const Where &path)
{
    const MemberReader reader(cursor, offset, key, path);
    reader.expect(JsonCursor::Kind::Number, "a number");
    const double number = cursor.number();
    if (!std::isfinite(number))
        fail(path, QStringLiteral("The number for \"%1\" does not fit in a double").arg(key));
    return number;
}

// Straight from the bytes when the text holds no escapes, which is how the
// program writes it.
std::optional<QUuid> plainUuid(QByteArrayView text)
{
    if (text.size() != 36 || text[8] != '-' || text[13] != '-' || text[18] != '-' || text[23] != '-')
        return std::nullopt;
    // The digit pairs of the 16 bytes; no pair spans a hyphen.
    static constexpr int pairStarts[16] = {0, 2, 4, 6, 9, 11, 14, 16, 19, 21, 24, 26, 28, 30, 32, 34};
    char bytes[16];
    for (int i = 0; i < 16; ++i) {
        const int high = JsonSyntax::hexDigitValue(text[pairStarts[i]]);
        const int low = JsonSyntax::hexDigitValue(text[pairStarts[i] + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes[i] = char(high * 16 + low);
    }
    return QUuid::fromRfc4122(QByteArrayView(bytes, 16));
}

QUuid uuidMember(JsonCursor &cursor, qsizetype offset, QLatin1StringView key, const Where &path)
{
    const MemberReader reader(cursor, offset, key, path);
    reader.expect(JsonCursor::Kind::String, "a string");
    if (const std::optional<QByteArrayView> plain = cursor.plainString()) {
        if (const std::optional<QUuid> id = plainUuid(*plain))
            return *id;
    }
    const QString text = cursor.string();
    if (!isUuidText(text))
        fail(path, QStringLiteral("Invalid UUID string for \"%1\": %2").arg(key, text.left(64)));
    return QUuid::fromString(text);
}

QDateTime dateMember(JsonCursor &cursor, qsizetype offset, QLatin1StringView key, const Where &path)
{
    const MemberReader reader(cursor, offset, key, path);
    reader.expect(JsonCursor::Kind::String, "a string");
    const QString text = cursor.string();
    const std::optional<QDateTime> date = parseDate(text);
    if (!date)
        fail(path, QStringLiteral("Expected date string to be ISO8601-formatted for \"%1\": %2")
                       .arg(key, text.left(64)));
    return *date;
}

void expectObject(JsonCursor &cursor, const Where &path)
{
    const JsonCursor::Kind kind = cursor.kind();
    if (kind != JsonCursor::Kind::Object)
        fail(path, QStringLiteral("Expected an object but found %1").arg(typeName(kind)));
}

const QLatin1StringView colorKeys[] = {
    QLatin1StringView("id"),   QLatin1StringView("name"),  QLatin1StringView("red"),
    QLatin1StringView("green"), QLatin1StringView("blue"), QLatin1StringView("alpha"),
    QLatin1StringView("dateAdded"),
};

ColorItem decodeColor(JsonCursor &cursor, const Where &path)
{
    expectObject(cursor, path);
    const auto members = gatherMembers(cursor, colorKeys);
    const qsizetype *at = members.offsets;
    ColorItem item;
    item.id = uuidMember(cursor, at[0], colorKeys[0], path);
    item.name = stringMember(cursor, at[1], colorKeys[1], path);
    item.red = numberMember(cursor, at[2], colorKeys[2], path);
    item.green = numberMember(cursor, at[3], colorKeys[3], path);
    item.blue = numberMember(cursor, at[4], colorKeys[4], path);
    item.alpha = numberMember(cursor, at[5], colorKeys[5], path);
    item.dateAdded = dateMember(cursor, at[6], colorKeys[6], path);
    return item;
}

const QLatin1StringView paletteKeys[] = {
    QLatin1StringView("id"),
    QLatin1StringView("name"),
    QLatin1StringView("colors"),
    QLatin1StringView("dateCreated"),
};

// A palette's colors are decoded where they stand rather than gathered
// and read afterwards: that would walk the bulk of the file twice. Their
// failure waits for its turn in field order.
struct PaletteColors
{
    QList<ColorItem> colors;
    std::optional<DecodeFailure> failure;
};

PaletteColors decodePaletteColors(JsonCursor &cursor, const Where &path)
{
    PaletteColors result;
    if (cursor.kind() != JsonCursor::Kind::Array) {
        cursor.skip();
        return result; // the field order pass reports the type
    }
    const qsizetype start = cursor.offset();
    try {
        cursor.enter();
        for (qsizetype i = 0; cursor.nextElement(); ++i)
            result.colors.append(decodeColor(cursor, Where{path.index, i}));
    } catch (const DecodeFailure &failure) {
        result.failure = failure;
        cursor.seek(start);
        cursor.skip();
    }
    return result;
}

Palette decodePalette(JsonCursor &cursor, const Where &path)
{
    expectObject(cursor, path);
    qsizetype at[4] = {-1, -1, -1, -1};
    PaletteColors colors;
    cursor.enter();
    while (cursor.nextMember()) {
        const auto key = std::find_if(std::begin(paletteKeys), std::end(paletteKeys),
                                      [&cursor](QLatin1StringView k) { return cursor.keyIs(k); });
        if (key != std::end(paletteKeys))
            at[key - std::begin(paletteKeys)] = cursor.offset();
        if (key == &paletteKeys[2])
            colors = decodePaletteColors(cursor, path); // a later "colors" replaces it
        else
            cursor.skip();
    }
    Palette palette;
    palette.id = uuidMember(cursor, at[0], paletteKeys[0], path);
    palette.name = stringMember(cursor, at[1], paletteKeys[1], path);
    {
        const MemberReader reader(cursor, at[2], paletteKeys[2], path);
        reader.expect(JsonCursor::Kind::Array, "an array");
    }
    if (colors.failure)
        throw *colors.failure;
    palette.colors = std::move(colors.colors);
    palette.dateCreated = dateMember(cursor, at[3], paletteKeys[3], path);
    return palette;
}

template<typename T, typename DecodeOne>
Decoded<QList<T>> decodeList(const QByteArray &json, DecodeOne decodeOne)
{
    try {
        if (const std::optional<JsonSyntax::Error> error = JsonSyntax::check(json))
            fail({}, QStringLiteral("The data is not valid JSON (%1 at offset %2)")
                         .arg(error->message)
                         .arg(error->offset));
        JsonCursor cursor(json);
        const JsonCursor::Kind top = cursor.kind();
        if (top != JsonCursor::Kind::Array)
            fail({}, QStringLiteral("Expected an array at the top level but found %1")
                         .arg(top == JsonCursor::Kind::Object ? QStringLiteral("an object")
                                                              : QStringLiteral("something else")));
        QList<T> list;
        cursor.enter();
        for (qsizetype i = 0; cursor.nextElement(); ++i)
            list.append(decodeOne(cursor, Where{i}));
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
