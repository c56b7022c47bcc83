#include "NearestPassingColor.h"

#include "Contrast.h"

#include <cmath>

namespace {

// The color at this lightness, with as much of the chroma as sRGB holds,
// rounded to HEX.
QString hexAt(double lightness, const OklchComponents &color)
{
    // A gray stays gray: the hair of chroma it carries through OKLab could
    // tip one channel over a rounding edge before the others.
    if (color.chroma < 1e-4) {
        const double gray = oklchToRGB(lightness, 0, 0).green;
        return hexString(gray, gray, gray);
    }
    std::optional<RgbColor> inGamut = oklchToRGBInGamut(lightness, color.chroma, color.hue);
    if (!inGamut) {
        double low = 0.0, high = color.chroma;
        for (int step = 0; step < 24; ++step) {
            const double chroma = (low + high) / 2;
            (oklchToRGBInGamut(lightness, chroma, color.hue) ? low : high) = chroma;
        }
        inGamut = oklchToRGB(lightness, low, color.hue);
    }
    return hexString(inGamut->red, inGamut->green, inGamut->blue);
}

// The least lightness step in one direction that reaches the ratio: coarse
// steps to the first that does, then halving back towards the color.
std::optional<double> stepTo(double direction, const OklchComponents &color, const QString &otherHex,
                             double ratio)
{
    const auto passes = [&](double step) {
        return contrastRatio(hexAt(color.lightness + direction * step, color), otherHex) >= ratio;
    };
    const double room = direction > 0 ? 1.0 - color.lightness : color.lightness;
    constexpr double coarse = 0.01;
    double below = 0.0;
    for (double step = std::min(coarse, room);; step = std::min(step + coarse, room)) {
        if (passes(step)) {
            double above = step;
            for (int halving = 0; halving < 20; ++halving) {
                const double middle = (below + above) / 2;
                (passes(middle) ? above : below) = middle;
            }
            return above;
        }
        if (step >= room)
            return std::nullopt;
        below = step;
    }
}

} // namespace

std::optional<PassingColor> nearestPassingColor(const RgbColor &color, const RgbColor &other, double ratio)
{
    const OklchComponents start = oklchComponents(color.red, color.green, color.blue);
    const QString otherHex = hexString(other.red, other.green, other.blue);
    const std::optional<double> lighter = stepTo(+1, start, otherHex, ratio);
    const std::optional<double> darker = stepTo(-1, start, otherHex, ratio);
    if (!lighter && !darker)
        return std::nullopt;
    const double lightness =
        darker && (!lighter || *darker < *lighter) ? start.lightness - *darker : start.lightness + *lighter;
    const QString hex = hexAt(lightness, start);
    return PassingColor{hex, contrastRatio(hex, otherHex)};
}
