#include "NumberParsing.h"

#include <QByteArray>

#include <clocale>
#include <cstdlib>
#include <locale.h>

namespace {

bool hasSurroundingBlanks(const QString &text)
{
    return text.front().isSpace() || text.back().isSpace();
}

// The C locale, independent of whatever locale the application set, so that
// the decimal separator is always the point.
locale_t cLocale()
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t(nullptr));
    return locale;
}

} // namespace

std::optional<qint64> parseWholeNumber(const QString &text)
{
    if (text.isEmpty())
        return std::nullopt;
    qsizetype i = 0;
    if (text[0] == u'+' || text[0] == u'-')
        i = 1;
    if (i == text.size())
        return std::nullopt;
    for (qsizetype j = i; j < text.size(); ++j) {
        if (text[j] < u'0' || text[j] > u'9')
            return std::nullopt;
    }
    bool ok = false;
    // QString::toLongLong accepts a leading '+' and refuses overflow.
    const qint64 value = text.toLongLong(&ok, 10);
    if (!ok)
        return std::nullopt;
    return value;
}

std::optional<double> parseDecimalNumber(const QString &text)
{
    if (text.isEmpty() || hasSurroundingBlanks(text))
        return std::nullopt;
    // Anything outside ASCII cannot be part of a number; refusing it here
    // also keeps multi-byte text away from strtod.
    for (const QChar c : text) {
        if (c.unicode() > 0x7F || c.unicode() == 0)
            return std::nullopt;
    }
    const QByteArray latin = text.toLatin1();
    char *end = nullptr;
    const double value = strtod_l(latin.constData(), &end, cLocale());
    if (end != latin.constData() + latin.size())
        return std::nullopt;
    return value;
}
