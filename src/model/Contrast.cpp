#include "Contrast.h"

#include "ColorFormats.h"

#include <algorithm>
#include <cmath>

namespace {

// WCAG 2.0 keeps the 0.03928 threshold (not sRGB's 0.04045).
double linearChannel(double c)
{
    return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

} // namespace

double relativeLuminance(double red, double green, double blue)
{
    return 0.2126 * linearChannel(red) + 0.7152 * linearChannel(green) + 0.0722 * linearChannel(blue);
}

double contrastRatio(const QString &hex1, const QString &hex2)
{
    const RgbColor text = parseHex(hex1).value_or(RgbColor{0.0, 0.0, 0.0});
    const RgbColor background = parseHex(hex2).value_or(RgbColor{1.0, 1.0, 1.0});
    const double l1 = relativeLuminance(text.red, text.green, text.blue);
    const double l2 = relativeLuminance(background.red, background.green, background.blue);
    return (std::max(l1, l2) + 0.05) / (std::min(l1, l2) + 0.05);
}

WcagLevel wcagLevel(double ratio)
{
    if (ratio >= 7.0)
        return WcagLevel::AAA;
    if (ratio >= 4.5)
        return WcagLevel::AA;
    if (ratio >= 3.0)
        return WcagLevel::AALarge;
    return WcagLevel::Fail;
}

QString wcagLabel(WcagLevel level)
{
    switch (level) {
    case WcagLevel::AAA:
        return QStringLiteral("AAA");
    case WcagLevel::AA:
        return QStringLiteral("AA");
    case WcagLevel::AALarge:
        return QStringLiteral("AA Large");
    case WcagLevel::Fail:
        break;
    }
    return QStringLiteral("Fail");
}

QColor wcagColor(WcagLevel level)
{
    // The system green, yellow and red of a dark appearance.
    const QColor green(48, 209, 88);
    switch (level) {
    case WcagLevel::AAA:
        return green;
    case WcagLevel::AA: {
        QColor dimmed = green;
        dimmed.setAlphaF(0.8f);
        return dimmed;
    }
    case WcagLevel::AALarge:
        return QColor(255, 214, 10);
    case WcagLevel::Fail:
        break;
    }
    return QColor(255, 69, 58);
}

QString contrastRatioText(double ratio)
{
    return formatFixed(ratio, 2);
}
