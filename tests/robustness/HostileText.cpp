#include "HostileText.h"

#include <QStringList>

namespace {

QString fromCodePoint(char32_t c)
{
    return QString::fromUcs4(&c, 1);
}

} // namespace

QString HostileText::plausible()
{
    static const QStringList samples = {QStringLiteral("#FF0000"),
                                        QStringLiteral("ff8800"),
                                        QStringLiteral("#fff"),
                                        QStringLiteral(" #00ff00 "),
                                        QStringLiteral("0x123456"),
                                        QStringLiteral("#12345G"),
                                        QStringLiteral("0"),
                                        QStringLiteral("255"),
                                        QStringLiteral("256"),
                                        QStringLiteral("-1"),
                                        QStringLiteral("+0"),
                                        QStringLiteral("-0"),
                                        QStringLiteral("12.5"),
                                        QStringLiteral("1e2"),
                                        QStringLiteral("100"),
                                        QStringLiteral("360"),
                                        QStringLiteral("360.0000001"),
                                        QStringLiteral("nan"),
                                        QStringLiteral("inf"),
                                        QStringLiteral("-inf"),
                                        QStringLiteral("0x1p3"),
                                        QStringLiteral(" 5"),
                                        QStringLiteral("5 "),
                                        QStringLiteral("1e400"),
                                        QStringLiteral("4.9e-324"),
                                        QStringLiteral("99999999999999999999"),
                                        QStringLiteral("0.5"),
                                        QStringLiteral("\u0665\u0660"),
                                        QStringLiteral("\uFF11\uFF12"),
                                        QStringLiteral("#\u0301FF0000")};
    return samples.at(qsizetype(m_random.bounded(quint32(samples.size()))));
}

QString HostileText::piece()
{
    QString text;
    const int length = 1 + int(m_random.bounded(6u));
    switch (m_random.bounded(9u)) {
    case 0: // C0 and C1 controls, DEL
        for (int i = 0; i < length; ++i) {
            const quint32 pick = m_random.bounded(66u);
            text += QChar(char16_t(pick < 32 ? pick : pick < 33 ? 0x7F : 0x80 + (pick - 33)));
        }
        break;
    case 1: { // right to left, with bidi controls
        static const char16_t bidi[] = {0x202E, 0x202B, 0x200F, 0x2067, 0x2069, 0x061C, 0x202C};
        for (int i = 0; i < length; ++i) {
            if (m_random.bounded(3u) == 0)
                text += QChar(bidi[m_random.bounded(7u)]);
            else
                text += QChar(char16_t((m_random.bounded(2u) ? 0x05D0 : 0x0627) + m_random.bounded(26u)));
        }
        break;
    }
    case 2: { // emoji, with ZWJ sequences, skin tones, flags
        static const char32_t emoji[] = {0x1F3A8, 0x1F469, 0x1F4BB, 0x1F1EB, 0x1F1F7,
                                         0x1F3FD, 0x2764,  0xFE0F,  0x200D,  0x1F9D1};
        for (int i = 0; i < length; ++i)
            text += fromCodePoint(emoji[m_random.bounded(10u)]);
        break;
    }
    case 3: // a letter under a stack of combining marks
        text += QLatin1Char('e');
        for (int i = 0; i < length * 8; ++i)
            text += QChar(char16_t(0x0300 + m_random.bounded(0x70u)));
        break;
    case 4:
        text += plausible();
        break;
    case 5: { // lone surrogates, noncharacters, BOM, replacement
        static const char16_t odd[] = {0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xFFFE,
                                       0xFFFF, 0xFEFF, 0xFFFD, 0xFDD0};
        for (int i = 0; i < length; ++i)
            text += QChar(odd[m_random.bounded(9u)]);
        break;
    }
    case 6: { // blanks of every kind
        static const char16_t blanks[] = {0x20,   0x09,   0xA0,   0x2028, 0x2029,
                                          0x3000, 0x200B, 0x180E, 0x0A,   0x0D};
        for (int i = 0; i < length; ++i)
            text += QChar(blanks[m_random.bounded(10u)]);
        break;
    }
    case 7: // anything in the basic plane
        for (int i = 0; i < length; ++i)
            text += QChar(char16_t(m_random.bounded(0x10000u)));
        break;
    default: // anything at all
        for (int i = 0; i < length; ++i) {
            const char32_t c = m_random.bounded(0x110000u);
            text += (c >= 0xD800 && c <= 0xDFFF) ? QString(QChar(char16_t(c))) : fromCodePoint(c);
        }
        break;
    }
    return text;
}

QString HostileText::next(qsizetype longLength)
{
    QString text;
    if (longLength > 0) {
        text.reserve(longLength + 64);
        while (text.size() < longLength)
            text += piece();
        return text.left(longLength);
    }
    const int pieces = 1 + int(m_random.bounded(3u));
    for (int i = 0; i < pieces; ++i)
        text += piece();
    return text;
}
