#include "JsonSyntax.h"

#include <charconv>
#include <system_error>
#include <vector>

namespace JsonSyntax {

namespace {

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c)
{
    return hexDigitValue(c) >= 0;
}

// Walks the document once with an explicit stack, so that deep nesting
// costs memory in a vector rather than the call stack.
class Checker
{
public:
    explicit Checker(QByteArrayView json)
        : m_begin(json.data())
        , m_p(json.data() + byteOrderMarkLength(json))
        , m_end(json.data() + json.size())
    {
    }

    std::optional<Error> run();

private:
    enum class Next { Value, Member, AfterValue, Done };

    Next value();
    Next member();
    Next afterValue();
    Next open(char bracket);
    bool string();
    bool number();
    bool literal(QByteArrayView word);
    bool utf8Sequence();

    void skipSpace()
    {
        while (m_p < m_end && isSpace(*m_p))
            ++m_p;
    }

    Next fail(const char *message)
    {
        m_error = Error{QString::fromLatin1(message), qsizetype(m_p - m_begin)};
        return Next::Done;
    }

    const char *m_begin;
    const char *m_p;
    const char *m_end;
    std::vector<char> m_open; // the closing bracket of each open container
    std::optional<Error> m_error;
};

std::optional<Error> Checker::run()
{
    skipSpace();
    if (m_p == m_end || (*m_p != '[' && *m_p != '{')) {
        fail("illegal value");
        return m_error;
    }
    Next next = Next::Value;
    while (next != Next::Done) {
        switch (next) {
        case Next::Value: next = value(); break;
        case Next::Member: next = member(); break;
        case Next::AfterValue: next = afterValue(); break;
        case Next::Done: break;
        }
    }
    return m_error;
}

Checker::Next Checker::value()
{
    skipSpace();
    if (m_p == m_end)
        return fail("illegal value");
    switch (*m_p) {
    case '[':
    case '{':
        return open(*m_p);
    case '"':
        return string() ? Next::AfterValue : Next::Done;
    case 't':
        return literal("true") ? Next::AfterValue : Next::Done;
    case 'f':
        return literal("false") ? Next::AfterValue : Next::Done;
    case 'n':
        return literal("null") ? Next::AfterValue : Next::Done;
    default:
        if (*m_p == '-' || *m_p == '.' || isDigit(*m_p))
            return number() ? Next::AfterValue : Next::Done;
        return fail("illegal value");
    }
}

Checker::Next Checker::open(char bracket)
{
    if (m_open.size() >= size_t(maxDepth))
        return fail("too deeply nested document");
    const char closing = bracket == '[' ? ']' : '}';
    m_open.push_back(closing);
    ++m_p;
    skipSpace();
    if (m_p < m_end && *m_p == closing) {
        ++m_p;
        m_open.pop_back();
        return Next::AfterValue;
    }
    return bracket == '[' ? Next::Value : Next::Member;
}

Checker::Next Checker::member()
{
    skipSpace();
    if (m_p == m_end || *m_p != '"')
        return fail("unterminated object");
    if (!string())
        return Next::Done;
    skipSpace();
    if (m_p == m_end || *m_p != ':')
        return fail("missing name separator");
    ++m_p;
    return Next::Value;
}

Checker::Next Checker::afterValue()
{
    skipSpace();
    if (m_open.empty()) {
        if (m_p != m_end)
            return fail("garbage at the end of the document");
        return Next::Done;
    }
    const char closing = m_open.back();
    if (m_p == m_end)
        return fail(closing == ']' ? "unterminated array" : "unterminated object");
    if (*m_p == closing) {
        ++m_p;
        m_open.pop_back();
        return Next::AfterValue;
    }
    if (*m_p != ',')
        return fail("missing value separator");
    ++m_p;
    skipSpace();
    if (m_p < m_end && *m_p == closing)
        return fail(closing == ']' ? "value is missing after a comma" : "object is missing after a comma");
    return closing == ']' ? Next::Value : Next::Member;
}

bool Checker::string()
{
    ++m_p; // the opening quote
    while (m_p < m_end) {
        const unsigned char c = static_cast<unsigned char>(*m_p);
        if (c == '"') {
            ++m_p;
            return true;
        }
        if (c == '\\') {
            ++m_p;
            if (m_p == m_end)
                break;
            if (*m_p == 'u') {
                for (int i = 1; i <= 4; ++i) {
                    if (m_p + i >= m_end || !isHexDigit(m_p[i])) {
                        fail("invalid escape sequence");
                        return false;
                    }
                }
                m_p += 5;
            } else {
                ++m_p; // any other byte stands for itself, as Latin-1
            }
        } else if (c < 0x80) {
            ++m_p;
        } else if (!utf8Sequence()) {
            fail("invalid UTF8 string");
            return false;
        }
    }
    fail("unterminated string");
    return false;
}

// One multi-byte UTF-8 sequence: no overlong forms, no surrogates, nothing
// above U+10FFFF.
bool Checker::utf8Sequence()
{
    const auto byte = [this](qsizetype i) { return static_cast<unsigned char>(m_p[i]); };
    const unsigned char lead = byte(0);
    int length = 0;
    char32_t code = 0;
    char32_t minimum = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        code = lead & 0x1F;
        minimum = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        code = lead & 0x0F;
        minimum = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        code = lead & 0x07;
        minimum = 0x10000;
    } else {
        return false;
    }
    if (m_end - m_p < length)
        return false;
    for (int i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return false;
        code = (code << 6) | (byte(i) & 0x3F);
    }
    if (code < minimum || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return false;
    m_p += length;
    return true;
}

bool Checker::number()
{
    const char *start = m_p;
    if (*m_p == '-')
        ++m_p;
    const char *integerStart = m_p;
    if (m_p < m_end && *m_p == '0') {
        ++m_p;
    } else {
        while (m_p < m_end && isDigit(*m_p))
            ++m_p;
    }
    const qsizetype integerDigits = m_p - integerStart;
    bool hasExponent = false;
    const char *fractionStart = m_p;
    if (m_p < m_end && *m_p == '.') {
        ++m_p;
        while (m_p < m_end && isDigit(*m_p))
            ++m_p;
    }
    const bool hasDigits = integerDigits > 0 || m_p - fractionStart > 1;
    if (m_p < m_end && (*m_p == 'e' || *m_p == 'E')) {
        hasExponent = true;
        ++m_p;
        if (m_p < m_end && (*m_p == '+' || *m_p == '-'))
            ++m_p;
        while (m_p < m_end && isDigit(*m_p))
            ++m_p;
    }
    // Without an exponent and with a few hundred integer digits at most,
    // the number is a finite double; only the rest needs converting.
    const bool plain = hasDigits && integerDigits <= 300 && !hasExponent;
    if (!plain && !numberValue(QByteArrayView(start, m_p - start))) {
        fail("illegal number");
        return false;
    }
    return true;
}

bool Checker::literal(QByteArrayView word)
{
    if (m_end - m_p < word.size() || QByteArrayView(m_p, word.size()) != word) {
        fail("illegal value");
        return false;
    }
    m_p += word.size();
    return true;
}

} // namespace

qsizetype byteOrderMarkLength(QByteArrayView json)
{
    return json.startsWith("\xEF\xBB\xBF") ? 3 : 0;
}

std::optional<Error> check(QByteArrayView json)
{
    return Checker(json).run();
}

int hexDigitValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

std::optional<double> numberValue(QByteArrayView text)
{
    const char *first = text.data();
    const char *last = first + text.size();
    double value = 0;
    const std::from_chars_result result = std::from_chars(first, last, value);
    // Out of range covers both overflow and underflow to zero.
    if (result.ec != std::errc() || result.ptr != last)
        return std::nullopt;
    // Qt keeps a whole number as an integer, which has no negative zero.
    return value == 0 ? 0.0 : value;
}

} // namespace JsonSyntax
