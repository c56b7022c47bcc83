#include "HexScanner.h"

#include <limits>

namespace {

int hexDigitValue(QChar c)
{
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'a' && u <= u'f')
        return u - u'a' + 10;
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    return -1;
}

} // namespace

std::optional<quint64> scanHexNumber(QStringView text)
{
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n && text[i].isSpace())
        ++i;
    if (i == n)
        return std::nullopt;

    if (text[i] == u'0') {
        ++i;
        if (i == n)
            return 0;
        if (hexDigitValue(text[i]) < 0) {
            if (text[i] == u'x' || text[i] == u'X')
                ++i;
            if (i == n || hexDigitValue(text[i]) < 0)
                return 0; // the "0" alone was the number
        }
    } else if (hexDigitValue(text[i]) < 0) {
        return std::nullopt;
    }

    quint64 value = 0;
    constexpr quint64 max = std::numeric_limits<quint64>::max();
    for (; i < n; ++i) {
        const int digit = hexDigitValue(text[i]);
        if (digit < 0)
            break;
        value = value > (max >> 4) ? max : (value << 4) | quint64(digit);
    }
    return value;
}
