#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

// Why a record could not be read, and where it stands in the file
// ("[3].colors[1]"). Thrown while a file is read; one bad record fails it.
struct RecordError
{
    explicit RecordError(const QString &message)
        : message(message)
    {
    }

    QString message;
    QString where;
};

// The fields of one record, each checked for its type before it is read
// (toDouble() on a string would quietly give 0). Every key is required;
// keys nobody asks for are ignored.
namespace RecordFields {

QUuid uuid(const QJsonObject &record, QLatin1StringView key);
QString string(const QJsonObject &record, QLatin1StringView key);
double number(const QJsonObject &record, QLatin1StringView key);
// Only the form yyyy-MM-ddTHH:mm:ssZ.
QDateTime date(const QJsonObject &record, QLatin1StringView key);
QJsonArray array(const QJsonObject &record, QLatin1StringView key);

// How the files write ids (upper case, no braces) and dates (UTC, whole
// seconds, yyyy-MM-ddTHH:mm:ssZ).
QString uuidText(const QUuid &id);
QString dateText(const QDateTime &date);
// Now, in whole seconds as the files keep it, so that a record in memory
// is the same as the record read back.
QDateTime now();

// Exactly yyyy-MM-ddTHH:mm:ssZ, a day and time that exist; nothing for
// anything else (QDateTime::fromString also takes fractions and offsets).
std::optional<QDateTime> parseDate(QStringView text);

QJsonObject object(const QJsonValueConstRef &value);

// Each element of the array read with T::fromJson(); a failure tells where
// it stands, after `name` ("colors[2]"). An array that nobody else holds
// (a file's top level) may drop each element once it is read, so that the
// records after it reuse its memory instead of fresh pages.
template<typename T> QList<T> list(QJsonArray array, QLatin1StringView name = {}, bool dropRead = false)
{
    QList<T> records;
    records.reserve(array.size());
    for (qsizetype index = 0; index < array.size(); ++index) {
        try {
            records.append(T::fromJson(object(array.constBegin()[index])));
        } catch (RecordError &error) {
            const QString here = QStringLiteral("%1[%2]").arg(name).arg(index);
            error.where = error.where.isEmpty() ? here : here + u'.' + error.where;
            throw;
        }
        if (dropRead)
            array[index] = QJsonValue();
    }
    return records;
}

} // namespace RecordFields
