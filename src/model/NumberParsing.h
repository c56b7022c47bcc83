#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>

// Strict number reading for typed input: the whole text must be the number,
// with no blanks around it.

// A whole decimal integer with an optional sign ("+12", "-3"); no fraction,
// no exponent. Values beyond 64 bits are refused.
std::optional<qint64> parseWholeNumber(const QString &text);

// A decimal number with a point as separator, an optional sign and
// exponent; also "inf", "infinity" and "nan" in any case, and hexadecimal
// floats ("0x1p-2"), as C's strtod reads them. Overflow reads as infinity.
std::optional<double> parseDecimalNumber(const QString &text);
