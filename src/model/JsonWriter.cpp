#include "JsonWriter.h"

#include <QDateTime>
#include <QIODevice>
#include <QUuid>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

// Every byte goes through room(): the whole library is written after every
// change, so this is the hot path of a save.

// Large enough that a write call costs little per byte, small enough to
// stay in the cache and to need no fresh pages on each save.
constexpr qsizetype chunkSize = 64 * 1024;

JsonWriter::JsonWriter(QIODevice &device)
    : m_device(device)
    , m_buffer(chunkSize, Qt::Uninitialized)
    , m_out(m_buffer.data())
    , m_end(m_out + chunkSize)
{
}

void JsonWriter::makeRoom(qsizetype extra)
{
    flush();
    if (m_buffer.size() < extra) // only a very long name needs more than a chunk
        m_buffer.resize(extra);
    m_out = m_buffer.data();
    m_end = m_out + m_buffer.size();
}

bool JsonWriter::flush()
{
    const qsizetype size = m_out - m_buffer.constData();
    if (!m_deviceFailed && size > 0)
        m_deviceFailed = m_device.write(m_buffer.constData(), size) != size;
    m_out = m_buffer.data();
    return !m_deviceFailed;
}

char *JsonWriter::lineBreak(char *out) const
{
    *out++ = '\n';
    for (int i = 0; i < m_depth * 2; ++i)
        *out++ = ' ';
    return out;
}

char *JsonWriter::startValue(qsizetype length)
{
    char *out = room(length + 2 + m_depth * 2);
    if (m_afterKey) {
        m_afterKey = false;
        return out;
    }
    if (m_depth > 0) {
        if (!m_firstInContainer)
            *out++ = ',';
        out = lineBreak(out);
    }
    m_firstInContainer = false;
    return out;
}

void JsonWriter::open(char bracket)
{
    char *out = startValue(1);
    *out++ = bracket;
    m_out = out;
    ++m_depth;
    m_firstInContainer = true;
}

void JsonWriter::close(char bracket)
{
    --m_depth;
    char *out = room(2 + m_depth * 2);
    if (!m_firstInContainer)
        out = lineBreak(out);
    *out++ = bracket;
    m_out = out;
    m_firstInContainer = false;
}

void JsonWriter::beginArray()
{
    open('[');
}

void JsonWriter::endArray()
{
    close(']');
}

void JsonWriter::beginObject()
{
    open('{');
}

void JsonWriter::endObject()
{
    close('}');
}

void JsonWriter::key(QLatin1StringView name)
{
    putAscii(name.data(), name.size(), " : ");
    m_afterKey = true;
}

void JsonWriter::putAscii(const char *text, qsizetype length, const char *after)
{
    char *out = startValue(length + 5);
    *out++ = '"';
    out = std::copy_n(text, length, out);
    *out++ = '"';
    while (*after)
        *out++ = *after++;
    m_out = out;
}

void JsonWriter::value(const QString &text)
{
    // At most 6 bytes ("\u001f") per UTF-16 unit, plus the quotes.
    char *out = startValue(text.size() * 6 + 2);
    *out++ = '"';
    // Walks the UTF-16 code units itself: QString::toUtf8() would turn a lone
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
        case '"':
            *out++ = '\\';
            *out++ = '"';
            break;
        case '\\':
            *out++ = '\\';
            *out++ = '\\';
            break;
        case '\b':
            *out++ = '\\';
            *out++ = 'b';
            break;
        case '\f':
            *out++ = '\\';
            *out++ = 'f';
            break;
        case '\n':
            *out++ = '\\';
            *out++ = 'n';
            break;
        case '\r':
            *out++ = '\\';
            *out++ = 'r';
            break;
        case '\t':
            *out++ = '\\';
            *out++ = 't';
            break;
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
    m_out = out;
}

void JsonWriter::value(double number)
{
    if (!std::isfinite(number)) {
        m_error = QStringLiteral("Unable to encode a color component that is not a finite number");
        return;
    }
    char *out = startValue(32);
    // Components sampled from a screen are k/255: their shortest texts are
    // worked out once instead of in every save.
    struct Text
    {
        char digits[24];
        qsizetype length;
    };
    static const std::array<Text, 256> byteTexts = [] {
        std::array<Text, 256> texts;
        for (int k = 0; k < 256; ++k) {
            char *digits = texts[k].digits;
            texts[k].length = std::to_chars(digits, digits + 24, k / 255.0).ptr - digits;
        }
        return texts;
    }();
    const bool inByteRange = number >= 0.0 && number <= 1.0 && !std::signbit(number); // not -0
    const long k = inByteRange ? std::lround(number * 255.0) : -1;
    if (k >= 0 && k / 255.0 == number) {
        m_out = std::copy_n(byteTexts[k].digits, byteTexts[k].length, out);
        return;
    }
    m_out = std::to_chars(out, out + 32, number).ptr;
}

void JsonWriter::value(const QUuid &id)
{
    char text[36];
    char *out = text;
    const auto hex = [&out](quint64 value, int digits) {
        for (int shift = digits * 4 - 4; shift >= 0; shift -= 4)
            *out++ = "0123456789ABCDEF"[(value >> shift) & 0xF];
    };
    hex(id.data1, 8);
    *out++ = '-';
    hex(id.data2, 4);
    *out++ = '-';
    hex(id.data3, 4);
    *out++ = '-';
    hex(id.data4[0] << 8 | id.data4[1], 4);
    *out++ = '-';
    for (int i = 2; i < 8; ++i)
        hex(id.data4[i], 2);
    putAscii(text, 36);
}

void JsonWriter::value(const QDateTime &date)
{
    // The civil date from the count of days since 1970-01-01 (H. Hinnant's
    // algorithm): QDateTime::date() and time() take several times longer,
    // and a large library writes thousands of dates on every change.
    const qint64 msecs = date.isValid() ? date.toMSecsSinceEpoch() : 0;
    const qint64 secs = msecs / 1000 - (msecs % 1000 < 0 ? 1 : 0); // rounded down
    const qint64 days = secs / 86400 - (secs % 86400 < 0 ? 1 : 0);
    const qint64 daySecs = secs - days * 86400;
    const qint64 era = (days >= -719468 ? days + 719468 : days + 719468 - 146096) / 146097;
    const qint64 dayOfEra = days + 719468 - era * 146097;
    const qint64 yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const qint64 dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const qint64 shiftedMonth = (5 * dayOfYear + 2) / 153; // 0 is March
    const qint64 month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
    const qint64 year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
    if (!date.isValid() || year < 1 || year > 9999) {
        m_error = QStringLiteral("Unable to encode a date outside the years 1 to 9999");
        return;
    }
    char text[20];
    char *out = text;
    const auto digits = [&out](qint64 value, char after) {
        *out++ = char('0' + value / 10);
        *out++ = char('0' + value % 10);
        *out++ = after;
    };
    *out++ = char('0' + year / 1000);
    *out++ = char('0' + year / 100 % 10);
    digits(year % 100, '-');
    digits(month, '-');
    digits(dayOfYear - (153 * shiftedMonth + 2) / 5 + 1, 'T');
    digits(daySecs / 3600, ':');
    digits(daySecs / 60 % 60, ':');
    digits(daySecs % 60, 'Z');
    putAscii(text, 20);
}
