#include "FilePalette.h"

#include "ColorFormats.h"

#include <algorithm>
#include <cmath>

namespace {

QString nameTooLong()
{
    return QStringLiteral("a name is longer than %1 characters").arg(FilePalette::maxNameLength);
}

} // namespace

QString FileColor::hexText() const
{
    return hexString(red / 255.0, green / 255.0, blue / 255.0);
}

QString FilePalette::addColor(const QString &colorName, qint64 red, qint64 green, qint64 blue)
{
    if (colors.size() >= maxColors)
        return tooManyColors();
    if (colorName.size() > maxNameLength)
        return nameTooLong();
    FileColor color;
    color.red = quint8(std::clamp<qint64>(red, 0, 255));
    color.green = quint8(std::clamp<qint64>(green, 0, 255));
    color.blue = quint8(std::clamp<qint64>(blue, 0, 255));
    color.name = colorName.isEmpty() ? color.hexText() : colorName;
    colors.append(color);
    return {};
}

QString FilePalette::addUnitColor(const QString &colorName, double red, double green, double blue)
{
    if (std::isnan(red) || std::isnan(green) || std::isnan(blue)) {
        ++skippedUnreadable;
        return {};
    }
    return addColor(colorName, byteFromUnit(red), byteFromUnit(green), byteFromUnit(blue));
}

QString FilePalette::setName(const QString &paletteName)
{
    if (paletteName.size() > maxNameLength)
        return nameTooLong();
    name = paletteName;
    return {};
}

QString FilePalette::tooManyColors()
{
    return QStringLiteral("it holds more than %1 colors").arg(maxColors);
}

quint8 byteFromUnit(double value)
{
    if (std::isnan(value))
        return 0;
    return quint8(roundHalfAwayFromZero(qBound(0.0, value, 1.0) * 255.0));
}
