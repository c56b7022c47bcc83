#pragma once

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>

class QDateTime;
class QIODevice;
class QUuid;

// Writes the record files: pretty-printed JSON with keys in the order they
// are written, doubles as the shortest text that reads back to the same
// value, UUIDs in upper case, dates as yyyy-MM-ddTHH:mm:ssZ. The whole file
// is rewritten after every change, and QJsonDocument::toJson is about 15
// times slower, sorts the keys and writes NaN as null. The text goes to a
// device through a small buffer, so a large file is never held in memory
// whole; flush() hands over the rest at the end.
class JsonWriter
{
public:
    explicit JsonWriter(QIODevice &device);

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
    // Hands the buffered text to the device. False once the device took
    // fewer bytes than it was given; nothing more is written after that.
    bool flush();

private:
    // Room for `extra` more bytes at m_out.
    char *room(qsizetype extra)
    {
        if (m_end - m_out < extra)
            makeRoom(extra);
        return m_out;
    }
    void makeRoom(qsizetype extra);
    // Where the next value goes, after the separator, line break and
    // indentation it needs, with room for `length` more bytes.
    char *startValue(qsizetype length);
    char *lineBreak(char *out) const;
    // A JSON string of ASCII that needs no escaping, then `after`.
    void putAscii(const char *text, qsizetype length, const char *after = "");
    void open(char bracket);
    void close(char bracket);

    QIODevice &m_device;
    bool m_deviceFailed = false;
    QByteArray m_buffer; // capacity; the text not yet written ends at m_out
    char *m_out = nullptr;
    char *m_end = nullptr;
    int m_depth = 0;
    bool m_firstInContainer = true;
    bool m_afterKey = false;
    QString m_error;
};
