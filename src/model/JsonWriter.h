#pragma once

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>

class QDateTime;
class QUuid;

// Writes the record files: pretty-printed JSON with keys in the order they
// are written, doubles as the shortest text that reads back to the same
// value, UUIDs in upper case, dates as yyyy-MM-ddTHH:mm:ssZ. The whole file
// is rewritten after every change, and QJsonDocument::toJson is about 15
// times slower, sorts the keys and writes NaN as null.
class JsonWriter
{
public:
    // Room for this many bytes up front spares regrowing a large file.
    explicit JsonWriter(qsizetype expectedSize = 0);

    void beginArray();
    void endArray();
    void beginObject();
    void endObject();
    // Record keys: ASCII that needs no escaping.
    void key(QLatin1StringView name);
    void value(const QString &text);
    void value(double number);
    void value(const QUuid &id);
    // In UTC, the fraction of a second dropped.
    void value(const QDateTime &date);

    // Why a value could not be written (a NaN or an infinity, a date outside
    // the years 1 to 9999); empty when all went well.
    QString error() const { return m_error; }
    // The text, leaving the writer empty.
    QByteArray takeData();

private:
    // Room for `extra` more bytes at m_out.
    char *room(qsizetype extra)
    {
        if (m_end - m_out < extra)
            grow(extra);
        return m_out;
    }
    void grow(qsizetype extra);
    // Where the next value goes, after the separator, line break and
    // indentation it needs, with room for `length` more bytes.
    char *startValue(qsizetype length);
    char *lineBreak(char *out) const;
    // A JSON string of ASCII that needs no escaping, then `after`.
    void putAscii(const char *text, qsizetype length, const char *after = "");
    void open(char bracket);
    void close(char bracket);

    QByteArray m_data; // capacity; the text ends at m_out
    char *m_out = nullptr;
    char *m_end = nullptr;
    int m_depth = 0;
    bool m_firstInContainer = true;
    bool m_afterKey = false;
    QString m_error;
};
