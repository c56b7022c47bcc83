#pragma once

#include <QByteArray>
#include <QString>

// A small pretty-printing JSON writer that keeps keys in the order they are
// written (QJsonObject would sort them) and prints doubles as the shortest
// text that reads back to the same value.
class JsonWriter
{
public:
    void beginArray();
    void endArray();
    void beginObject();
    void endObject();
    void key(const QString &name);
    void value(const QString &text);
    // Returns false for a NaN or an infinity, which JSON cannot hold.
    bool value(double number);

    QByteArray data() const { return m_data; }

private:
    void beforeValue();
    void newline();
    void appendUtf8(char32_t c);

    QByteArray m_data;
    int m_depth = 0;
    bool m_firstInContainer = true;
    bool m_afterKey = false;
};
