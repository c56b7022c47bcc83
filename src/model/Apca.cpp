#include "Apca.h"

#include <cmath>

namespace {

// Screen luminance as APCA estimates it: a plain 2.4 power, no linear toe.
double luminance(const RgbColor &color)
{
    return 0.2126729 * std::pow(color.red, 2.4) + 0.7151522 * std::pow(color.green, 2.4)
        + 0.0721750 * std::pow(color.blue, 2.4);
}

// Near black, screens and eyes flatten out: the luminance is raised softly.
double softClamped(double y)
{
    constexpr double blackThreshold = 0.022;
    return y > blackThreshold ? y : y + std::pow(blackThreshold - y, 1.414);
}

} // namespace

namespace Apca {

double contrast(const RgbColor &text, const RgbColor &background)
{
    const double textY = softClamped(luminance(text));
    const double backgroundY = softClamped(luminance(background));
    if (!std::isfinite(textY) || !std::isfinite(backgroundY) || std::abs(backgroundY - textY) < 0.0005)
        return 0.0;
    constexpr double scale = 1.14, offset = 0.027, clip = 0.1;
    if (backgroundY > textY) { // dark text on a light background
        const double sapc = (std::pow(backgroundY, 0.56) - std::pow(textY, 0.57)) * scale;
        return sapc < clip ? 0.0 : (sapc - offset) * 100.0;
    }
    const double sapc = (std::pow(backgroundY, 0.65) - std::pow(textY, 0.62)) * scale;
    return sapc > -clip ? 0.0 : (sapc + offset) * 100.0;
}

QString text(double lc)
{
    return QStringLiteral("Lc ") + formatFixed(lc, 1);
}

QString use(double lc)
{
    // Graded as shown, so that "Lc 60.0" never reads "Large text".
    const double shown = std::abs(formatFixed(lc, 1).toDouble());
    const std::pair<double, const char *> uses[] = {
        {90, "Preferred body text"}, {75, "Body text"}, {60, "Content text"},
        {45, "Large text"},          {30, "Spot text"}, {15, "Non-text"},
    };
    for (const auto &[least, name] : uses) {
        if (shown >= least)
            return QString::fromLatin1(name);
    }
    return QStringLiteral("Not readable");
}

} // namespace Apca
