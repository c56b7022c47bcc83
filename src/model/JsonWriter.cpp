#include "JsonWriter.h"

#include <QList>

#include <charconv>
#include <cmath>

void JsonWriter::newline()
{
    m_data += '\n';
    m_data += QByteArray(m_depth * 2, ' ');
}

void JsonWriter::beforeValue()
{
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (m_depth > 0) {
        if (!m_firstInContainer)
            m_data += ',';
        newline();
    }
    m_firstInContainer = false;
}

void JsonWriter::beginArray()
{
    beforeValue();
    m_data += '[';
    ++m_depth;
    m_firstInContainer = true;
}

void JsonWriter::endArray()
{
    --m_depth;
    if (!m_firstInContainer)
        newline();
    m_data += ']';
    m_firstInContainer = false;
}

void JsonWriter::beginObject()
{
    beforeValue();
    m_data += '{';
    ++m_depth;
    m_firstInContainer = true;
}

void JsonWriter::endObject()
{
    endArray(); // same layout, other bracket
    m_data.back() = '}';
}

void JsonWriter::key(const QString &name)
{
    value(name);
    m_data += " : ";
    m_afterKey = true;
}

void JsonWriter::value(const QString &text)
{
    beforeValue();
    m_data += '"';
    // Walks the UTF-16 code units itself: QString::toUcs4() would turn a lone
    // surrogate into U+FFFD, changing a stored name on every rewrite.
    const qsizetype size = text.size();
    for (qsizetype i = 0; i < size; ++i) {
        char32_t c = text.at(i).unicode();
        if (QChar::isHighSurrogate(c) && i + 1 < size && text.at(i + 1).isLowSurrogate())
            c = QChar::surrogateToUcs4(char16_t(c), text.at(++i).unicode());
        switch (c) {
        case '"': m_data += "\\\""; break;
        case '\\': m_data += "\\\\"; break;
        case '\b': m_data += "\\b"; break;
        case '\f': m_data += "\\f"; break;
        case '\n': m_data += "\\n"; break;
        case '\r': m_data += "\\r"; break;
        case '\t': m_data += "\\t"; break;
        default:
            if (c < 0x20 || (c >= 0xD800 && c <= 0xDFFF)) {
                // Control characters, and lone surrogates that UTF-8 cannot carry.
                m_data += QByteArray("\\u") + QByteArray::number(uint(c), 16).rightJustified(4, '0');
            } else if (c < 0x80) {
                m_data += char(c);
            } else {
                appendUtf8(c);
            }
        }
    }
    m_data += '"';
}

void JsonWriter::appendUtf8(char32_t c)
{
    if (c < 0x800) {
        m_data += char(0xC0 | (c >> 6));
    } else if (c < 0x10000) {
        m_data += char(0xE0 | (c >> 12));
        m_data += char(0x80 | ((c >> 6) & 0x3F));
    } else {
        m_data += char(0xF0 | (c >> 18));
        m_data += char(0x80 | ((c >> 12) & 0x3F));
        m_data += char(0x80 | ((c >> 6) & 0x3F));
    }
    m_data += char(0x80 | (c & 0x3F));
}

bool JsonWriter::value(double number)
{
    if (!std::isfinite(number))
        return false;
    beforeValue();
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, number);
    m_data.append(buffer, result.ptr - buffer);
    return true;
}
