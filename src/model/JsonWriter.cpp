#include "JsonWriter.h"

#include <algorithm>
#include <charconv>
#include <utility>
#include <cmath>

// Every byte goes through reserveFor()/put(): the whole library is written
// after every change, so this is the hot path of a save.

char *JsonWriter::reserveFor(qsizetype extra)
{
    const qsizetype needed = m_size + extra;
    if (needed > m_data.size())
        m_data.resize(std::max<qsizetype>(needed, m_data.size() * 2));
    return m_data.data() + m_size;
}

void JsonWriter::put(char c)
{
    *reserveFor(1) = c;
    ++m_size;
}

void JsonWriter::put(const char *text, qsizetype length)
{
    std::copy_n(text, length, reserveFor(length));
    m_size += length;
}

JsonWriter JsonWriter::insideArray(int depth)
{
    JsonWriter writer;
    writer.m_depth = depth;
    writer.m_afterKey = true; // no separator before the element itself
    return writer;
}

void JsonWriter::rawValue(const QByteArray &encoded)
{
    beforeValue();
    put(encoded.constData(), encoded.size());
}

void JsonWriter::newline()
{
    char *out = reserveFor(1 + m_depth * 2);
    *out++ = '\n';
    std::fill_n(out, m_depth * 2, ' ');
    m_size += 1 + m_depth * 2;
}

void JsonWriter::beforeValue()
{
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (m_depth > 0) {
        if (!m_firstInContainer)
            put(',');
        newline();
    }
    m_firstInContainer = false;
}

void JsonWriter::beginArray()
{
    beforeValue();
    put('[');
    ++m_depth;
    m_firstInContainer = true;
}

void JsonWriter::endArray()
{
    --m_depth;
    if (!m_firstInContainer)
        newline();
    put(']');
    m_firstInContainer = false;
}

void JsonWriter::beginObject()
{
    beforeValue();
    put('{');
    ++m_depth;
    m_firstInContainer = true;
}

void JsonWriter::endObject()
{
    endArray(); // same layout, other bracket
    m_data[m_size - 1] = '}';
}

void JsonWriter::key(const QString &name)
{
    value(name);
    put(" : ", 3);
    m_afterKey = true;
}

void JsonWriter::key(QLatin1StringView name)
{
    // Keys of the record format: plain ASCII, nothing to escape.
    beforeValue();
    char *out = reserveFor(name.size() + 5);
    *out++ = '"';
    out = std::copy_n(name.data(), name.size(), out);
    std::copy_n("\" : ", 4, out);
    m_size += name.size() + 5;
    m_afterKey = true;
}

void JsonWriter::value(const QString &text)
{
    beforeValue();
    // At most 6 bytes ("\u001f") per UTF-16 unit, plus the quotes.
    char *const start = reserveFor(text.size() * 6 + 2);
    char *out = start;
    *out++ = '"';
    // Walks the UTF-16 code units itself: QString::toUcs4() would turn a lone
    // surrogate into U+FFFD, changing a stored name on every rewrite.
    static constexpr char hexDigits[] = "0123456789abcdef";
    const QChar *units = text.constData();
    const qsizetype size = text.size();
    for (qsizetype i = 0; i < size; ++i) {
        char32_t c = units[i].unicode();
        if (c >= 0x20 && c < 0x80 && c != '"' && c != '\\') {
            *out++ = char(c);
            continue;
        }
        if (QChar::isHighSurrogate(c) && i + 1 < size && units[i + 1].isLowSurrogate())
            c = QChar::surrogateToUcs4(char16_t(c), units[++i].unicode());
        switch (c) {
        case '"': *out++ = '\\'; *out++ = '"'; break;
        case '\\': *out++ = '\\'; *out++ = '\\'; break;
        case '\b': *out++ = '\\'; *out++ = 'b'; break;
        case '\f': *out++ = '\\'; *out++ = 'f'; break;
        case '\n': *out++ = '\\'; *out++ = 'n'; break;
        case '\r': *out++ = '\\'; *out++ = 'r'; break;
        case '\t': *out++ = '\\'; *out++ = 't'; break;
        default:
            if (c < 0x20 || (c >= 0xD800 && c <= 0xDFFF) || c == 0xFEFF) {
                // Control characters, lone surrogates that UTF-8 cannot carry,
                // and U+FEFF, which Qt's reader drops from the start of a
                // string when it comes as raw UTF-8 (a byte order mark).
                *out++ = '\\';
                *out++ = 'u';
                for (int shift = 12; shift >= 0; shift -= 4)
                    *out++ = hexDigits[(c >> shift) & 0xF];
            } else if (c < 0x800) {
                *out++ = char(0xC0 | (c >> 6));
                *out++ = char(0x80 | (c & 0x3F));
            } else if (c < 0x10000) {
                *out++ = char(0xE0 | (c >> 12));
                *out++ = char(0x80 | ((c >> 6) & 0x3F));
                *out++ = char(0x80 | (c & 0x3F));
            } else {
                *out++ = char(0xF0 | (c >> 18));
                *out++ = char(0x80 | ((c >> 12) & 0x3F));
                *out++ = char(0x80 | ((c >> 6) & 0x3F));
                *out++ = char(0x80 | (c & 0x3F));
            }
        }
    }
    *out++ = '"';
    m_size += out - start;
}

void JsonWriter::value(QLatin1StringView text)
{
    // Callers pass ASCII that needs no escaping (UUIDs, dates).
    beforeValue();
    char *out = reserveFor(text.size() + 2);
    *out++ = '"';
    out = std::copy_n(text.data(), text.size(), out);
    *out = '"';
    m_size += text.size() + 2;
}

bool JsonWriter::value(double number)
{
    if (!std::isfinite(number))
        return false;
    beforeValue();
    char *out = reserveFor(32);
    const auto result = std::to_chars(out, out + 32, number);
    m_size += result.ptr - out;
    return true;
}

void JsonWriter::reserve(qsizetype bytes)
{
    if (bytes > m_data.size())
        m_data.resize(bytes);
}

QByteArray JsonWriter::data() const
{
    return m_data.left(m_size);
}

QByteArray JsonWriter::takeData()
{
    m_data.truncate(m_size);
    m_size = 0;
    return std::exchange(m_data, QByteArray());
}
