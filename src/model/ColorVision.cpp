#include "ColorVision.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using Matrix = std::array<std::array<double, 3>, 3>;

// Machado, Oliveira and Fernandes 2009, severity 1.0, on linear sRGB.
constexpr Matrix protanopia = {
    {{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}}};
constexpr Matrix deuteranopia = {
    {{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}}};
constexpr Matrix tritanopia = {
    {{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}};

double linear(double c)
{
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double encoded(double c)
{
    c = std::clamp(c, 0.0, 1.0);
    return c <= 0.0031308 ? c * 12.92 : 1.055 * std::pow(c, 1 / 2.4) - 0.055;
}

} // namespace

namespace ColorVision {

QString name(Deficiency deficiency)
{
    switch (deficiency) {
    case Deficiency::Protanopia:
        return QStringLiteral("Protanopia");
    case Deficiency::Deuteranopia:
        return QStringLiteral("Deuteranopia");
    case Deficiency::Tritanopia:
        return QStringLiteral("Tritanopia");
    case Deficiency::Achromatopsia:
        break;
    }
    return QStringLiteral("Achromatopsia");
}

RgbColor simulate(Deficiency deficiency, const RgbColor &color)
{
    const std::array<double, 3> in = {linear(color.red), linear(color.green), linear(color.blue)};
    if (deficiency == Deficiency::Achromatopsia) {
        const double gray = encoded(0.2126729 * in[0] + 0.7151522 * in[1] + 0.0721750 * in[2]);
        return {gray, gray, gray};
    }
    const Matrix &m = deficiency == Deficiency::Protanopia ? protanopia
        : deficiency == Deficiency::Deuteranopia           ? deuteranopia
                                                           : tritanopia;
    std::array<double, 3> out{};
    for (int row = 0; row < 3; ++row)
        out[row] = encoded(m[row][0] * in[0] + m[row][1] * in[1] + m[row][2] * in[2]);
    return {out[0], out[1], out[2]};
}

} // namespace ColorVision
