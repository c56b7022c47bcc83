#pragma once

#include "model/ColorFormats.h"

#include <QString>
#include <QStringList>

#include <optional>

// The five notations a color is shown, typed and printed in.
enum class Notation { Hex, Rgb, Hsl, Oklch, Cmyk };

namespace Notations {

inline constexpr Notation all[] = {Notation::Hex, Notation::Rgb, Notation::Hsl, Notation::Oklch,
                                   Notation::Cmyk};

// "hex", "rgb", "hsl", "oklch", "cmyk": the names the command line takes.
QString name(Notation notation);
std::optional<Notation> fromName(const QString &name);

// The color as one text: the texts the window shows and copies, and for
// CMYK, which the window shows as four fields, "cmyk(C%, M%, Y%, K%)".
QString text(Notation notation, const RgbColor &color);

// The texts of the notation's fields in the Convert tab: one for HEX,
// three for RGB, HSL and OKLCH, four for CMYK.
QStringList fieldTexts(Notation notation, const RgbColor &color);

// The color that typed field texts stand for, or nothing when any text
// fails to parse or lies out of range (bounds inclusive; NaN is never in
// range).
std::optional<RgbColor> parseFields(Notation notation, const QStringList &texts);

// A color written as one text, as `text` writes it: HEX as a hex field
// reads it, or "rgb(…)", "hsl(…)", "oklch(…)", "cmyk(…)" with their
// numbers apart by commas or blanks, a "%" after a number allowed.
std::optional<RgbColor> parseText(const QString &text);

} // namespace Notations
