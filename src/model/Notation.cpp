#include "Notation.h"

#include "model/NumberParsing.h"

#include <QRegularExpression>

#include <array>

namespace {

bool inRange(double value, double min, double max)
{
    return value >= min && value <= max; // false for NaN
}

// Reads `count` decimals, each within its own bounds.
template<size_t count>
std::optional<std::array<double, count>>
parseDecimals(const QStringList &texts, const std::array<std::pair<double, double>, count> &bounds)
{
    if (texts.size() != qsizetype(count))
        return std::nullopt;
    std::array<double, count> values{};
    for (size_t i = 0; i < count; ++i) {
        const std::optional<double> value = parseDecimalNumber(texts.at(qsizetype(i)));
        if (!value || !inRange(*value, bounds[i].first, bounds[i].second))
            return std::nullopt;
        values[i] = *value;
    }
    return values;
}

constexpr double unbounded = std::numeric_limits<double>::infinity();

constexpr const char *names[] = {"hex", "rgb", "hsl", "oklch", "cmyk"};

} // namespace

namespace Notations {

QString name(Notation notation)
{
    return QLatin1String(names[int(notation)]);
}

std::optional<Notation> fromName(const QString &name)
{
    for (const Notation notation : all) {
        if (name == QLatin1String(names[int(notation)]))
            return notation;
    }
    return std::nullopt;
}

QString text(Notation notation, const RgbColor &color)
{
    const double r = color.red, g = color.green, b = color.blue;
    switch (notation) {
    case Notation::Hex:
        return hexString(r, g, b);
    case Notation::Rgb:
        return rgbString(r, g, b);
    case Notation::Hsl:
        return hslString(r, g, b);
    case Notation::Oklch:
        return oklchString(r, g, b);
    case Notation::Cmyk:
        return cmykString(r, g, b);
    }
    return {};
}

std::optional<RgbColor> parseFields(Notation notation, const QStringList &texts)
{
    switch (notation) {
    case Notation::Hex:
        if (texts.size() != 1)
            return std::nullopt;
        return parseHex(texts.first());
    case Notation::Rgb: {
        if (texts.size() != 3)
            return std::nullopt;
        double channels[3];
        for (int i = 0; i < 3; ++i) {
            const std::optional<qint64> value = parseWholeNumber(texts.at(i));
            if (!value || *value < 0 || *value > 255)
                return std::nullopt;
            channels[i] = double(*value) / 255;
        }
        return RgbColor{channels[0], channels[1], channels[2]};
    }
    case Notation::Hsl: {
        const auto v = parseDecimals<3>(texts, {{{0, 360}, {0, 100}, {0, 100}}});
        if (!v)
            return std::nullopt;
        return hslToRGB((*v)[0], (*v)[1], (*v)[2]);
    }
    case Notation::Oklch: {
        const auto v = parseDecimals<3>(texts, {{{0, 100}, {0, unbounded}, {0, 360}}});
        if (!v)
            return std::nullopt;
        return oklchToRGB((*v)[0] / 100, (*v)[1], (*v)[2]);
    }
    case Notation::Cmyk: {
        const auto v = parseDecimals<4>(texts, {{{0, 100}, {0, 100}, {0, 100}, {0, 100}}});
        if (!v)
            return std::nullopt;
        return cmykToRGB((*v)[0], (*v)[1], (*v)[2], (*v)[3]);
    }
    }
    return std::nullopt;
}

std::optional<RgbColor> parseText(const QString &text)
{
    static const QRegularExpression function(QStringLiteral("^\\s*([a-z]+)\\(([^()]*)\\)\\s*$"),
                                             QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = function.match(text);
    if (!match.hasMatch())
        return parseHex(text);
    const std::optional<Notation> notation = fromName(match.captured(1).toLower());
    if (!notation || notation == Notation::Hex)
        return std::nullopt;
    static const QRegularExpression apart(QStringLiteral("\\s*,\\s*|\\s+"));
    QStringList numbers = match.captured(2).trimmed().split(apart);
    for (QString &number : numbers) {
        if (number.endsWith(u'%'))
            number.chop(1);
    }
    return parseFields(*notation, numbers);
}

QStringList fieldTexts(Notation notation, const RgbColor &color)
{
    const double r = color.red, g = color.green, b = color.blue;
    switch (notation) {
    case Notation::Hex:
        return {hexString(r, g, b)};
    case Notation::Rgb: {
        const RgbComponents c = rgbComponents(r, g, b);
        return {QString::number(c.red), QString::number(c.green), QString::number(c.blue)};
    }
    case Notation::Hsl: {
        const HslComponents c = hslComponents(r, g, b);
        return {QString::number(c.hue), QString::number(c.saturation), QString::number(c.lightness)};
    }
    case Notation::Oklch: {
        const OklchComponents c = oklchComponents(r, g, b);
        return {formatFixed(c.lightness * 100, 1), formatFixed(c.chroma, 2), formatFixed(c.hue, 0)};
    }
    case Notation::Cmyk: {
        const CmykComponents c = cmykComponents(r, g, b);
        return {QString::number(c.cyan), QString::number(c.magenta), QString::number(c.yellow),
                QString::number(c.black)};
    }
    }
    return {};
}

} // namespace Notations
