#include "JsonCursor.h"

#include "JsonSyntax.h"

#include <cstring>

namespace {

// UTF-8 to UTF-16 keeping every U+FEFF, where QString::fromUtf8() would
// take a leading one for a byte order mark and drop it.
QString fromUtf8KeepingFeff(QByteArrayView bytes)
{
    static constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
    if (!bytes.startsWith(byteOrderMark))
        return QString::fromUtf8(bytes);
    QString text;
    while (bytes.startsWith(byteOrderMark)) {
        text += QChar(0xFEFF);
        bytes = bytes.sliced(3);
    }
    return text + QString::fromUtf8(bytes);
}

// The text between the quotes with its escapes resolved; the bytes are
// valid UTF-8 (the check saw to that).
QString unescape(QByteArrayView raw)
{
    QString text;
    text.reserve(raw.size());
    const char *p = raw.data();
    const char *end = p + raw.size();
    while (p < end) {
        const char *run = p;
        while (p < end && *p != '\\')
            ++p;
        if (p > run)
            text += fromUtf8KeepingFeff(QByteArrayView(run, p - run));
        if (p == end)
            break;
        ++p; // the backslash
        if (p == end)
            break;
        const char escape = *p++;
        switch (escape) {
        case 'b': text += u'\b'; break;
        case 'f': text += u'\f'; break;
        case 'n': text += u'\n'; break;
        case 'r': text += u'\r'; break;
        case 't': text += u'\t'; break;
        case 'u': {
            // One UTF-16 unit; a pair of escapes makes a surrogate pair by
            // itself, and a lone surrogate is kept as it was written.
            char16_t unit = 0;
            for (int i = 0; i < 4 && p < end; ++i)
                unit = char16_t(unit * 16 + JsonSyntax::hexDigitValue(*p++));
            text += QChar(unit);
            break;
        }
        default:
            // '"', '\\', '/', and any other byte standing for itself.
            text += QLatin1Char(escape);
            break;
        }
    }
    return text;
}

bool isNumberChar(char c)
{
    return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E';
}

} // namespace

JsonCursor::JsonCursor(QByteArrayView checkedJson)
    : m_begin(checkedJson.data())
    , m_p(checkedJson.data() + JsonSyntax::byteOrderMarkLength(checkedJson))
    , m_end(checkedJson.data() + checkedJson.size())
{
}

void JsonCursor::skipSpace()
{
    while (m_p < m_end && (*m_p == ' ' || *m_p == '\n' || *m_p == '\t' || *m_p == '\r'))
        ++m_p;
}

JsonCursor::Kind JsonCursor::kind()
{
    skipSpace();
    if (m_p == m_end)
        return Kind::Null;
    switch (*m_p) {
    case '{': return Kind::Object;
    case '[': return Kind::Array;
    case '"': return Kind::String;
    case 't':
    case 'f': return Kind::Bool;
    case 'n': return Kind::Null;
    default: return Kind::Number;
    }
}

void JsonCursor::enter()
{
    skipSpace();
    if (m_p < m_end)
        ++m_p;
}

bool JsonCursor::nextItem(char closing)
{
    skipSpace();
    if (m_p == m_end)
        return false;
    if (*m_p == closing) {
        ++m_p;
        return false;
    }
    if (*m_p == ',') {
        ++m_p;
        skipSpace();
    }
    return m_p < m_end;
}

bool JsonCursor::nextElement()
{
    return nextItem(']');
}

bool JsonCursor::nextMember()
{
    if (!nextItem('}'))
        return false;
    if (*m_p != '"')
        return false;
    const char *close = stringEnd(m_p, &m_keyEscaped);
    m_key = QByteArrayView(m_p + 1, close - m_p - 1);
    m_p = close < m_end ? close + 1 : m_end;
    skipSpace();
    if (m_p < m_end && *m_p == ':')
        ++m_p;
    skipSpace();
    return m_p < m_end;
}

bool JsonCursor::keyIs(QLatin1StringView key) const
{
    if (!m_keyEscaped)
        return m_key == QByteArrayView(key.data(), key.size());
    return unescape(m_key) == key;
}

// The closing quote of the string that opens at quote (or the end of the
// text), and whether the string holds escapes.
const char *JsonCursor::stringEnd(const char *quote, bool *escaped) const
{
    *escaped = false;
    const char *p = quote + 1;
    while (p < m_end) {
        const void *found = std::memchr(p, '"', size_t(m_end - p));
        if (!found)
            return m_end;
        const char *close = static_cast<const char *>(found);
        // An odd run of backslashes before the quote escapes it.
        qsizetype backslashes = 0;
        for (const char *b = close - 1; b >= p && *b == '\\'; --b)
            ++backslashes;
        if (!*escaped && std::memchr(p, '\\', size_t(close - p)))
            *escaped = true;
        if (backslashes % 2 == 0)
            return close;
        p = close + 1;
    }
    return m_end;
}

QString JsonCursor::string()
{
    skipSpace();
    if (m_p == m_end || *m_p != '"')
        return {};
    bool escaped = false;
    const char *close = stringEnd(m_p, &escaped);
    const QByteArrayView raw(m_p + 1, close - m_p - 1);
    m_p = close < m_end ? close + 1 : m_end;
    // As in Qt's parser: a string with escapes keeps a leading U+FEFF, one
    // without loses it (the program writes a leading U+FEFF escaped).
    if (escaped)
        return unescape(raw);
    return QString::fromUtf8(raw);
}

std::optional<QByteArrayView> JsonCursor::plainString()
{
    skipSpace();
    const char *p = m_p;
    if (p == m_end || *p != '"')
        return std::nullopt;
    bool escaped = false;
    const char *close = stringEnd(p, &escaped);
    if (escaped || close == m_end)
        return std::nullopt;
    return QByteArrayView(p + 1, close - p - 1);
}

double JsonCursor::number()
{
    skipSpace();
    const char *start = m_p;
    while (m_p < m_end && isNumberChar(*m_p))
        ++m_p;
    return JsonSyntax::numberValue(QByteArrayView(start, m_p - start)).value_or(0.0);
}

void JsonCursor::skip()
{
    switch (kind()) {
    case Kind::String: {
        bool escaped = false;
        const char *close = stringEnd(m_p, &escaped);
        m_p = close < m_end ? close + 1 : m_end;
        return;
    }
    case Kind::Number:
        while (m_p < m_end && isNumberChar(*m_p))
            ++m_p;
        return;
    case Kind::Bool:
    case Kind::Null:
        while (m_p < m_end && *m_p >= 'a' && *m_p <= 'z')
            ++m_p;
        return;
    case Kind::Object:
    case Kind::Array:
        break;
    }
    // A container: count brackets, stepping over strings whole.
    qsizetype depth = 0;
    while (m_p < m_end) {
        const char c = *m_p;
        if (c == '"') {
            bool escaped = false;
            const char *close = stringEnd(m_p, &escaped);
            m_p = close < m_end ? close + 1 : m_end;
            continue;
        }
        ++m_p;
        if (c == '[' || c == '{') {
            ++depth;
        } else if (c == ']' || c == '}') {
            if (--depth == 0)
                return;
        }
    }
}
