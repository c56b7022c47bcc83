#include "PickFormat.h"

#include "model/ColorFormats.h"

#include <array>
#include <utility>

namespace {

const std::array<std::pair<PickFormat, const char *>, 5> formatNames{{
    {PickFormat::Hex, "hex"},
    {PickFormat::Rgb, "rgb"},
    {PickFormat::Hsl, "hsl"},
    {PickFormat::Oklch, "oklch"},
    {PickFormat::Cmyk, "cmyk"},
}};

} // namespace

QStringList PickFormats::names()
{
    QStringList list;
    for (const auto &[format, name] : formatNames)
        list.append(QLatin1String(name));
    return list;
}

QString PickFormats::name(PickFormat format)
{
    for (const auto &[candidate, name] : formatNames) {
        if (candidate == format)
            return QLatin1String(name);
    }
    return {};
}

std::optional<PickFormat> PickFormats::fromName(const QString &name)
{
    for (const auto &[format, candidate] : formatNames) {
        if (name == QLatin1String(candidate))
            return format;
    }
    return std::nullopt;
}

QString PickFormats::text(const ColorItem &color, PickFormat format)
{
    const double r = color.red, g = color.green, b = color.blue;
    switch (format) {
    case PickFormat::Hex:
        return hexString(r, g, b);
    case PickFormat::Rgb:
        return rgbString(r, g, b);
    case PickFormat::Hsl:
        return hslString(r, g, b);
    case PickFormat::Oklch:
        return oklchString(r, g, b);
    case PickFormat::Cmyk:
        return cmykString(r, g, b);
    }
    return {};
}
