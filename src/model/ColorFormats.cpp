#include "ColorFormats.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

constexpr double pi = 3.141592653589793;

double linearFromSrgb(double c)
{
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double srgbFromLinear(double x)
{
    return x <= 0.0031308 ? 12.92 * x : 1.055 * std::pow(x, 0.4166666666666667) - 0.055;
}

double signedCubeRoot(double x)
{
    return x >= 0 ? std::pow(x, 1.0 / 3.0) : -std::pow(-x, 1.0 / 3.0);
}

double hslChannel(double p, double q, double t)
{
    if (t < 0)
        t += 1;
    if (t > 1)
        t -= 1;
    if (t < 1.0 / 6.0)
        return p + (q - p) * 6 * t;
    if (t < 1.0 / 2.0)
        return q;
    if (t < 2.0 / 3.0)
        return p + (q - p) * (2.0 / 3.0 - t) * 6;
    return p;
}

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

// A hexadecimal number read the lenient way a text scanner reads it:
// leading blanks skipped, an optional 0x or 0X, then the longest run of
// digits. Nothing only when no digit stands at the start; a lone "0"
// before a non-digit (as in "0xZZ") reads 0. Values beyond 64 bits
// saturate.
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
                return 0;
        }
    } else if (hexDigitValue(text[i]) < 0) {
        return std::nullopt;
    }
    quint64 value = 0;
    constexpr quint64 max = std::numeric_limits<quint64>::max();
    for (int digit; i < n && (digit = hexDigitValue(text[i])) >= 0; ++i)
        value = value > (max >> 4) ? max : (value << 4) | quint64(digit);
    return value;
}

// Swift-style String.count: user-perceived characters, not code units.
qsizetype graphemeCount(const QString &text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() != -1)
        ++count;
    return count;
}

} // namespace

qint64 roundHalfAwayFromZero(double value)
{
    if (std::isnan(value))
        return 0;
    const double rounded = std::round(value);
    // 2^63 is exactly representable; anything at or beyond it does not fit.
    if (rounded >= 9223372036854775808.0)
        return std::numeric_limits<qint64>::max();
    if (rounded < -9223372036854775808.0)
        return std::numeric_limits<qint64>::min();
    return static_cast<qint64>(rounded);
}

QString formatFixed(double value, int decimals)
{
    // std::to_chars rounds exactly as printf does in the C locale, whatever
    // locale the application has set.
    char buffer[400];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    if (result.ec != std::errc())
        return QString::number(value, 'f', decimals);
    return QString::fromLatin1(buffer, result.ptr - buffer);
}

RgbComponents rgbComponents(double r, double g, double b)
{
    return {roundHalfAwayFromZero(r * 255), roundHalfAwayFromZero(g * 255), roundHalfAwayFromZero(b * 255)};
}

QString hexString(double r, double g, double b)
{
    const RgbComponents c = rgbComponents(r, g, b);
    return QString::asprintf("#%02llX%02llX%02llX", static_cast<long long>(c.red),
                             static_cast<long long>(c.green), static_cast<long long>(c.blue));
}

QString rgbString(double r, double g, double b)
{
    const RgbComponents c = rgbComponents(r, g, b);
    return QStringLiteral("rgb(%1, %2, %3)").arg(c.red).arg(c.green).arg(c.blue);
}

HslComponents hslComponents(double r, double g, double b)
{
    const double max = std::max({r, g, b});
    const double min = std::min({r, g, b});
    const double d = max - min;
    const double l = (max + min) / 2;
    double h = 0;
    double s = 0;
    if (d != 0) {
        double sector;
        if (max == r)
            sector = std::fmod((g - b) / d, 6.0);
        else if (max == g)
            sector = (b - r) / d + 2;
        else
            sector = (r - g) / d + 4;
        h = 60 * sector;
        if (h < 0)
            h += 360;
        s = d / (1 - std::fabs(2 * l - 1));
        // Within the gamut the saturation is at most 1, but next to white or
        // black (l rounding to 1 or 0) the divisor can round to 0 and s
        // to infinity; the true value there is 1.
        if (min >= 0 && max <= 1)
            s = std::min(s, 1.0);
    }
    return {roundHalfAwayFromZero(h), roundHalfAwayFromZero(s * 100), roundHalfAwayFromZero(l * 100)};
}

QString hslString(double r, double g, double b)
{
    const HslComponents c = hslComponents(r, g, b);
    return QStringLiteral("hsl(%1, %2%, %3%)").arg(c.hue).arg(c.saturation).arg(c.lightness);
}

CmykComponents cmykComponents(double r, double g, double b)
{
    const double k = 1 - std::max({r, g, b});
    if (k == 1.0)
        return {0, 0, 0, 100};
    return {roundHalfAwayFromZero((1 - r - k) / (1 - k) * 100),
            roundHalfAwayFromZero((1 - g - k) / (1 - k) * 100),
            roundHalfAwayFromZero((1 - b - k) / (1 - k) * 100), roundHalfAwayFromZero(k * 100)};
}

QString cmykString(double r, double g, double b)
{
    const CmykComponents c = cmykComponents(r, g, b);
    return QStringLiteral("cmyk(%1%, %2%, %3%, %4%)").arg(c.cyan).arg(c.magenta).arg(c.yellow).arg(c.black);
}

OklchComponents oklchComponents(double r, double g, double b)
{
    const double lr = linearFromSrgb(r);
    const double lg = linearFromSrgb(g);
    const double lb = linearFromSrgb(b);

    const double l = 0.4122214708 * lr + 0.5363325363 * lg + 0.0514459929 * lb;
    const double m = 0.2119034982 * lr + 0.6806995451 * lg + 0.1073969566 * lb;
    const double s = 0.0883024619 * lr + 0.2817188376 * lg + 0.6299787005 * lb;

    const double l_ = signedCubeRoot(l);
    const double m_ = signedCubeRoot(m);
    const double s_ = signedCubeRoot(s);

    const double lightness = 0.2104542553 * l_ + 0.7936177850 * m_ - 0.0040720468 * s_;
    const double a = 1.9779984951 * l_ - 2.4285922050 * m_ + 0.4505937099 * s_;
    const double bb = 0.0259040371 * l_ + 0.7827717662 * m_ - 0.8086757660 * s_;

    const double chroma = std::sqrt(a * a + bb * bb);
    double hue = std::atan2(bb, a) * 180 / pi;
    if (hue < 0)
        hue += 360;
    return {lightness, chroma, hue};
}

QString oklchString(double r, double g, double b)
{
    const OklchComponents c = oklchComponents(r, g, b);
    return QStringLiteral("oklch(%1% %2 %3)")
        .arg(formatFixed(c.lightness * 100, 1), formatFixed(c.chroma, 2), formatFixed(c.hue, 0));
}

std::optional<RgbColor> parseHex(const QString &text)
{
    QString hex = text.trimmed();
    if (hex.startsWith(u'#'))
        hex.remove(0, 1);
    if (graphemeCount(hex) != 6)
        return std::nullopt;
    const std::optional<quint64> value = scanHexNumber(hex);
    if (!value)
        return std::nullopt;
    const quint64 v = *value;
    return RgbColor{double((v >> 16) & 0xFF) / 255, double((v >> 8) & 0xFF) / 255, double(v & 0xFF) / 255};
}

std::optional<RgbColor> parseCssHex(QStringView digits)
{
    const qsizetype n = digits.size();
    if ((n != 3 && n != 4 && n != 6 && n != 8)
        || !std::all_of(digits.begin(), digits.end(), [](QChar c) { return hexDigitValue(c) >= 0; }))
        return std::nullopt;
    if (n >= 6)
        return parseHex(digits.first(6).toString());
    QString doubled; // #RGB: every digit twice
    for (const QChar d : digits.first(3))
        doubled.append(d).append(d);
    return parseHex(doubled);
}

QColor toQColor(const RgbColor &color, double alpha)
{
    return QColor::fromRgbF(float(qBound(0.0, color.red, 1.0)), float(qBound(0.0, color.green, 1.0)),
                            float(qBound(0.0, color.blue, 1.0)), float(qBound(0.0, alpha, 1.0)));
}

RgbColor hslToRGB(double h, double s, double l)
{
    s /= 100;
    l /= 100;
    if (s == 0)
        return {l, l, l};
    h /= 360;
    const double q = l < 0.5 ? l * (1 + s) : l + s - l * s;
    const double p = 2 * l - q;
    return {hslChannel(p, q, h + 1.0 / 3.0), hslChannel(p, q, h), hslChannel(p, q, h - 1.0 / 3.0)};
}

namespace {

// Linear sRGB, unclipped.
std::array<double, 3> oklchToLinear(double lightness, double chroma, double hue)
{
    const double a = chroma * std::cos(hue * pi / 180);
    const double b = chroma * std::sin(hue * pi / 180);

    const double l_ = lightness + 0.3963377774 * a + 0.2158037573 * b;
    const double m_ = lightness - 0.1055613458 * a - 0.0638541728 * b;
    const double s_ = lightness - 0.0894841775 * a - 1.2914855480 * b;
    const double l = l_ * l_ * l_;
    const double m = m_ * m_ * m_;
    const double s = s_ * s_ * s_;

    const double r = 4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s;
    const double g = -1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s;
    const double bl = -0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s;
    return {r, g, bl};
}

} // namespace

RgbColor oklchToRGB(double lightness, double chroma, double hue)
{
    const auto [r, g, bl] = oklchToLinear(lightness, chroma, hue);
    // Channel by channel: min with 1 first, then max with 0. An overflowing
    // chroma can turn a channel into NaN; it is clipped to 0 like any other
    // value outside the gamut.
    const auto clip = [](double x) {
        const double v = srgbFromLinear(x);
        return std::isnan(v) ? 0.0 : std::max(std::min(v, 1.0), 0.0);
    };
    return {clip(r), clip(g), clip(bl)};
}

std::optional<RgbColor> oklchToRGBInGamut(double lightness, double chroma, double hue)
{
    const std::array<double, 3> linear = oklchToLinear(lightness, chroma, hue);
    // A hair of slack: the matrices' own rounding puts white at 1 + 1e-10.
    constexpr double slack = 1e-7;
    for (const double c : linear) {
        if (!(c >= -slack && c <= 1 + slack))
            return std::nullopt;
    }
    return oklchToRGB(lightness, chroma, hue);
}

RgbColor cmykToRGB(double c, double m, double y, double k)
{
    c /= 100;
    m /= 100;
    y /= 100;
    k /= 100;
    return {(1 - c) * (1 - k), (1 - m) * (1 - k), (1 - y) * (1 - k)};
}
