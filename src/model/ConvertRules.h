#pragma once

#include "model/ColorFormats.h"

#include <QString>
#include <QStringList>

#include <optional>

// What the Convert tab accepts in each notation and how it writes a color
// back into every notation's fields.
enum class Notation { Hex, Rgb, Hsl, Oklch, Cmyk };

// The color a group of typed texts stands for, or nothing when any text
// fails to parse or lies out of range (bounds inclusive; NaN is never in
// range). Hex takes one text, RGB/HSL/OKLCH three, CMYK four.
std::optional<RgbColor> parseNotation(Notation notation, const QStringList &texts);

// The texts of one notation's fields for a color, as the tab shows them.
QStringList notationTexts(Notation notation, const RgbColor &color);
