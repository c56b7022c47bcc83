#include "CssColorScanner.h"

#include "ColorFormats.h"

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double pi = 3.141592653589793;
// An rgb() or hsl() longer than this is no color a stylesheet writes.
constexpr qsizetype maxFunctionLength = 256;

bool isAsciiLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isHexDigit(QChar c)
{
    return isDigit(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

// Characters of a CSS or SCSS name.
bool isNameChar(QChar c)
{
    return isAsciiLetter(c) || isDigit(c) || c == u'-' || c == u'_' || c.unicode() >= 0x80;
}

// The text with /* */ comments and SCSS line comments blanked out, so that
// a color in a comment is not taken and offsets stay as they were.
QString withoutComments(QString text)
{
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != u'/')
            continue;
        qsizetype end = -1;
        if (text[i + 1] == u'*') {
            end = text.indexOf("*/"_L1, i + 2);
            end = end < 0 ? text.size() : end + 2;
        } else if (text[i + 1] == u'/' && (i == 0 || text[i - 1].isSpace() || text[i - 1] == u';')) {
            // "//" after a blank or at a line's start; not the one in "url(http://".
            end = text.indexOf(u'\n', i);
            end = end < 0 ? text.size() : end;
        }
        if (end < 0)
            continue;
        for (qsizetype j = i; j < end; ++j)
            text[j] = u' ';
        i = end - 1;
    }
    return text;
}

// A CSS number with an optional unit ("12", "-4.5e1", "50%", "0.5turn").
struct Quantity
{
    double value = 0.0;
    QString unit;
};

std::optional<Quantity> readQuantity(QStringView token)
{
    if (token.compare("none"_L1, Qt::CaseInsensitive) == 0)
        return Quantity{};
    qsizetype i = 0;
    if (i < token.size() && (token[i] == u'+' || token[i] == u'-'))
        ++i;
    const qsizetype mantissa = i;
    while (i < token.size() && isDigit(token[i]))
        ++i;
    if (i < token.size() && token[i] == u'.') {
        ++i;
        while (i < token.size() && isDigit(token[i]))
            ++i;
    }
    if (i == mantissa || (i == mantissa + 1 && token[mantissa] == u'.'))
        return std::nullopt;
    if (i + 1 < token.size() && (token[i] == u'e' || token[i] == u'E')
        && (isDigit(token[i + 1])
            || (i + 2 < token.size() && (token[i + 1] == u'+' || token[i + 1] == u'-')
                && isDigit(token[i + 2])))) {
        i += 2;
        while (i < token.size() && isDigit(token[i]))
            ++i;
    }
    bool ok = false;
    const double value = token.first(i).toDouble(&ok);
    if (!ok && !std::isinf(value))
        return std::nullopt;
    return Quantity{value, token.sliced(i).toString().toLower()};
}

// The values between the parentheses: split at commas, blanks and "/".
QList<QStringView> tokens(QStringView arguments)
{
    QList<QStringView> list;
    qsizetype start = -1;
    for (qsizetype i = 0; i <= arguments.size(); ++i) {
        const bool separator =
            i == arguments.size() || arguments[i].isSpace() || arguments[i] == u',' || arguments[i] == u'/';
        if (separator && start >= 0) {
            list.append(arguments.sliced(start, i - start));
            start = -1;
        } else if (!separator && start < 0) {
            start = i;
        }
    }
    return list;
}

std::optional<RgbColor> rgbFunction(const QList<QStringView> &values)
{
    RgbColor color;
    double *channels[] = {&color.red, &color.green, &color.blue};
    for (int i = 0; i < 3; ++i) {
        const std::optional<Quantity> q = readQuantity(values[i]);
        if (!q || (!q->unit.isEmpty() && q->unit != "%"_L1))
            return std::nullopt;
        *channels[i] = q->unit.isEmpty() ? q->value / 255.0 : q->value / 100.0;
    }
    return color;
}

std::optional<RgbColor> hslFunction(const QList<QStringView> &values)
{
    const std::optional<Quantity> hue = readQuantity(values[0]);
    const std::optional<Quantity> saturation = readQuantity(values[1]);
    const std::optional<Quantity> lightness = readQuantity(values[2]);
    if (!hue || !saturation || !lightness)
        return std::nullopt;
    double degrees = hue->value;
    if (hue->unit == "turn"_L1)
        degrees *= 360.0;
    else if (hue->unit == "rad"_L1)
        degrees *= 180.0 / pi;
    else if (hue->unit == "grad"_L1)
        degrees *= 0.9;
    else if (!hue->unit.isEmpty() && hue->unit != "deg"_L1)
        return std::nullopt;
    for (const Quantity *percent : {&*saturation, &*lightness}) {
        if (!percent->unit.isEmpty() && percent->unit != "%"_L1)
            return std::nullopt;
    }
    if (!std::isfinite(degrees))
        return std::nullopt;
    // hslToRGB wraps a hue only once: bring it into 0..360 first.
    degrees = std::fmod(degrees, 360.0);
    if (degrees < 0)
        degrees += 360.0;
    return hslToRGB(degrees, qBound(0.0, saturation->value, 100.0), qBound(0.0, lightness->value, 100.0));
}

// Walks the text once, collecting the colors of each declaration with
// the name that declaration gives them.
class Scanner
{
public:
    explicit Scanner(const QString &text)
        : m_text(text)
    {
    }

    QString run(ExchangePalette &palette)
    {
        for (m_at = 0; m_at < m_text.size();) {
            const QChar c = m_text[m_at];
            if (c == u';' || c == u'}') {
                flush(palette);
                ++m_at;
            } else if (c == u'{') {
                // What came before was a selector or an at-rule.
                m_pending.clear();
                m_pendingUnreadable = 0;
                m_name.clear();
                ++m_at;
            } else if (c == u'#') {
                hexColor();
            } else if ((c == u'-' || c == u'$') && startsToken()) {
                declarationName();
            } else if (isAsciiLetter(c) && startsToken()) {
                colorFunction();
            } else {
                ++m_at;
            }
            if (!m_error.isEmpty())
                return m_error;
        }
        flush(palette);
        return m_error;
    }

private:
    struct Found
    {
        QString name;
        RgbColor color;
    };

    bool startsToken() const { return m_at == 0 || !isNameChar(m_text[m_at - 1]); }

    qsizetype nameEnd(qsizetype from) const
    {
        while (from < m_text.size() && isNameChar(m_text[from]))
            ++from;
        return from;
    }

    void add(const RgbColor &color)
    {
        // Refused now rather than after gathering a whole file of them.
        if (m_pending.size() >= ExchangePalette::maxColors)
            m_error = ExchangePalette::tooManyColors();
        m_pending.append({m_name, color});
    }

    void flush(ExchangePalette &palette)
    {
        for (const Found &found : std::as_const(m_pending)) {
            m_error = palette.addUnitColor(found.name, found.color.red, found.color.green, found.color.blue);
            if (!m_error.isEmpty())
                break;
        }
        palette.skippedUnreadable += m_pendingUnreadable;
        m_pending.clear();
        m_pendingUnreadable = 0;
        m_name.clear();
    }

    void hexColor()
    {
        qsizetype end = m_at + 1;
        while (end < m_text.size() && isHexDigit(m_text[end]))
            ++end;
        const qsizetype digits = end - m_at - 1;
        const bool colorLength = digits == 3 || digits == 4 || digits == 6 || digits == 8;
        if (colorLength && (end == m_text.size() || !isNameChar(m_text[end]))) {
            QString hex = m_text.sliced(m_at + 1, digits);
            if (digits <= 4) { // #RGB: every digit doubled
                QString doubled;
                for (const QChar d : hex.first(3))
                    doubled.append(d).append(d);
                hex = doubled;
            }
            if (const std::optional<RgbColor> color = parseHex(hex.first(6)))
                add(*color);
        }
        m_at = qMax(end, nameEnd(m_at + 1));
    }

    // "--name:" or "$name:" names the colors of its declaration.
    void declarationName()
    {
        const bool property = m_text[m_at] == u'-';
        const qsizetype start = m_at + (property ? 2 : 1);
        if (property && (start > m_text.size() || m_text[m_at + 1] != u'-')) {
            m_at = nameEnd(m_at);
            return;
        }
        const qsizetype end = nameEnd(start);
        qsizetype colon = end;
        while (colon < m_text.size() && m_text[colon].isSpace())
            ++colon;
        if (end > start && colon < m_text.size() && m_text[colon] == u':') {
            m_name = m_text.sliced(start, end - start);
            m_at = colon + 1;
        } else {
            m_at = end;
        }
    }

    void colorFunction()
    {
        const qsizetype end = nameEnd(m_at);
        const QString function = m_text.sliced(m_at, end - m_at).toLower();
        m_at = end;
        const bool rgb = function == "rgb"_L1 || function == "rgba"_L1;
        const bool hsl = function == "hsl"_L1 || function == "hsla"_L1;
        if ((!rgb && !hsl) || end >= m_text.size() || m_text[end] != u'(')
            return;
        // Looked for only as far as a color function can reach, so that a
        // text of unclosed "rgb(" is still read in one pass.
        const QStringView reach =
            QStringView(m_text).sliced(end + 1).first(qMin(maxFunctionLength, m_text.size() - end - 1));
        const qsizetype close = reach.indexOf(u')');
        std::optional<RgbColor> color;
        if (close >= 0) {
            const QStringView arguments = reach.first(close);
            const QList<QStringView> values = tokens(arguments);
            if (!arguments.contains(u'(') && (values.size() == 3 || values.size() == 4))
                color = rgb ? rgbFunction(values) : hslFunction(values);
            m_at = end + 1 + close + 1;
        }
        if (color)
            add(*color);
        else
            ++m_pendingUnreadable;
    }

    const QString &m_text;
    qsizetype m_at = 0;
    QString m_name;
    QList<Found> m_pending;
    int m_pendingUnreadable = 0;
    QString m_error;
};

} // namespace

QString scanCssColors(const QByteArray &data, ExchangePalette &palette)
{
    const QString text = withoutComments(QString::fromUtf8(data));
    return Scanner(text).run(palette);
}
