#pragma once

#include <QColor>
#include <QString>
#include <QStringView>
#include <QtGlobal>

#include <optional>

// The color notations and their reverse conversions. Stateless and cheap;
// every view that shows or reads a color text goes through these.

struct RgbColor
{
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    friend bool operator==(const RgbColor &, const RgbColor &) = default;
};

struct RgbComponents
{
    qint64 red = 0;
    qint64 green = 0;
    qint64 blue = 0;
    friend bool operator==(const RgbComponents &, const RgbComponents &) = default;
};

struct HslComponents
{
    qint64 hue = 0;        // degrees, may be 360
    qint64 saturation = 0; // percent
    qint64 lightness = 0;  // percent
    friend bool operator==(const HslComponents &, const HslComponents &) = default;
};

struct CmykComponents
{
    qint64 cyan = 0;
    qint64 magenta = 0;
    qint64 yellow = 0;
    qint64 black = 0;
    friend bool operator==(const CmykComponents &, const CmykComponents &) = default;
};

struct OklchComponents
{
    double lightness = 0.0; // 0 to 1
    double chroma = 0.0;
    double hue = 0.0; // degrees, 0 up to 360
};

// Nearest integer, halves away from zero. Values beyond 64 bits saturate and
// a NaN gives 0, so a hostile stored component cannot bring the program down.
qint64 roundHalfAwayFromZero(double value);

// printf-style fixed notation ("%.Nf"), independent of the process locale.
QString formatFixed(double value, int decimals);

RgbComponents rgbComponents(double r, double g, double b);
QString hexString(double r, double g, double b);
QString rgbString(double r, double g, double b);
HslComponents hslComponents(double r, double g, double b);
QString hslString(double r, double g, double b);
CmykComponents cmykComponents(double r, double g, double b);
// "cmyk(C%, M%, Y%, K%)" from cmykComponents, for text outside the window
// (the window shows the four numbers in fields of their own).
QString cmykString(double r, double g, double b);
OklchComponents oklchComponents(double r, double g, double b);
QString oklchString(double r, double g, double b);

// The hex text a user types: blanks around it and one "#" dropped, then
// exactly six characters, read as a text scanner reads a hexadecimal
// number (an optional 0x, then the longest run of digits; whatever follows
// is ignored, so "12345G" reads 0x12345).
std::optional<RgbColor> parseHex(const QString &text);
// The hex digits of a color in a stylesheet or palette file: #RGB, #RGBA,
// #RRGGBB or #RRGGBBAA (the "#" already dropped); alpha is left out.
std::optional<RgbColor> parseCssHex(QStringView digits);

// The color as a screen shows it: components clamped to 0..1.
QColor toQColor(const RgbColor &color, double alpha = 1.0);

RgbColor hslToRGB(double h, double s, double l);
RgbColor oklchToRGB(double lightness, double chroma, double hue);
// Nothing when the color lies outside sRGB (which oklchToRGB clips).
std::optional<RgbColor> oklchToRGBInGamut(double lightness, double chroma, double hue);
RgbColor cmykToRGB(double c, double m, double y, double k);
