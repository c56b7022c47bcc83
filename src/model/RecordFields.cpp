#include "RecordFields.h"

#include <cstdio>

namespace RecordFields {

namespace {

QString typeName(QJsonValue::Type type)
{
    switch (type) {
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Bool:
        return QStringLiteral("a boolean");
    case QJsonValue::Double:
        return QStringLiteral("a number");
    case QJsonValue::String:
        return QStringLiteral("a string");
    case QJsonValue::Array:
        return QStringLiteral("an array");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    case QJsonValue::Undefined:
        break;
    }
    return QStringLiteral("nothing");
}

// A reference into the document: no copy of the value until it is read.
QJsonValueConstRef field(const QJsonObject &record, QLatin1StringView key, QJsonValue::Type type)
{
    const auto it = record.constFind(key);
    if (it == record.constEnd())
        throw RecordError{QStringLiteral("No value for key \"%1\"").arg(key)};
    const QJsonValueConstRef value = *it;
    if (value.type() != type)
        throw RecordError{QStringLiteral("Expected %1 for \"%2\" but found %3")
                              .arg(typeName(type), key, typeName(value.type()))};
    return value;
}

} // namespace

QUuid uuid(const QJsonObject &record, QLatin1StringView key)
{
    const QString text = string(record, key);
    // 8-4-4-4-12 hexadecimal digits of either case, no braces; the nil UUID
    // is the one valid text that reads as null.
    const QUuid id = text.size() == 36 ? QUuid::fromString(text) : QUuid();
    if (id.isNull() && text != QLatin1StringView("00000000-0000-0000-0000-000000000000"))
        throw RecordError{QStringLiteral("Invalid UUID string for \"%1\": %2").arg(key, text.left(64))};
    return id;
}

QString string(const QJsonObject &record, QLatin1StringView key)
{
    return field(record, key, QJsonValue::String).toString();
}

double number(const QJsonObject &record, QLatin1StringView key)
{
    // Qt's parser refuses numbers beyond a double, so every number is finite.
    return field(record, key, QJsonValue::Double).toDouble();
}

QDateTime date(const QJsonObject &record, QLatin1StringView key)
{
    const QString text = string(record, key);
    const std::optional<QDateTime> date = parseDate(text);
    if (!date)
        throw RecordError{QStringLiteral("Expected date string to be ISO8601-formatted for \"%1\": %2")
                              .arg(key, text.left(64))};
    return *date;
}

QJsonArray array(const QJsonObject &record, QLatin1StringView key)
{
    return field(record, key, QJsonValue::Array).toArray();
}

QJsonObject object(const QJsonValueConstRef &value)
{
    if (!value.isObject())
        throw RecordError{QStringLiteral("Expected an object but found %1").arg(typeName(value.type()))};
    return value.toObject();
}

QString uuidText(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

QDateTime now()
{
    return QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch(), Qt::UTC);
}

QString dateText(const QDateTime &date)
{
    // By plain arithmetic from the seconds since 1970: QDateTime's own
    // formatting goes through time zones, and a library writes thousands.
    const qint64 secs = date.toSecsSinceEpoch();
    const qint64 days = secs / 86400 - (secs % 86400 < 0 ? 1 : 0);
    const int daySecs = int(secs - days * 86400);
    int year = 0, month = 0, day = 0;
    QDate::fromJulianDay(days + 2440588).getDate(&year, &month, &day);
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", year, month, day, daySecs / 3600,
                  daySecs / 60 % 60, daySecs % 60);
    return QString::fromLatin1(text);
}

std::optional<QDateTime> parseDate(QStringView text)
{
    static constexpr char16_t form[] = u"dddd-dd-ddTdd:dd:ddZ"; // d: an ASCII digit
    if (text.size() != 20)
        return std::nullopt;
    for (qsizetype i = 0; i < 20; ++i) {
        const char16_t c = text[i].unicode();
        if (form[i] == u'd' ? (c < u'0' || c > u'9') : c != form[i])
            return std::nullopt;
    }
    const auto number = [text](qsizetype from, qsizetype length) {
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

} // namespace RecordFields
