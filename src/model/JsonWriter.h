#pragma once

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>

// A small pretty-printing JSON writer that keeps keys in the order they are
// written (QJsonObject would sort them) and prints doubles as the shortest
// text that reads back to the same value.
class JsonWriter
{
public:
    // A writer for one element of an array nested `depth` deep, to be
    // placed later with rawValue() at that depth.
    static JsonWriter insideArray(int depth);

    void beginArray();
    void endArray();
    void beginObject();
    void endObject();
    void key(const QString &name);
    // ASCII that needs no escaping: the record keys.
    void key(QLatin1StringView name);
    void value(const QString &text);
    // ASCII that needs no escaping: UUIDs and dates.
    void value(QLatin1StringView text);
    // Returns false for a NaN or an infinity, which JSON cannot hold.
    bool value(double number);
    // A value written before by an insideArray() writer of this depth.
    void rawValue(const QByteArray &encoded);

    // Room for this many bytes in all, to spare regrowing a large file.
    void reserve(qsizetype bytes);
    QByteArray data() const;
    // The text, leaving the writer empty; spares copying a large file.
    QByteArray takeData();

private:
    char *reserveFor(qsizetype extra);
    void put(char c);
    void put(const char *text, qsizetype length);
    void beforeValue();
    void newline();

    QByteArray m_data; // capacity; the text is the first m_size bytes
    qsizetype m_size = 0;
    int m_depth = 0;
    bool m_firstInContainer = true;
    bool m_afterKey = false;
};
