#pragma once

#include <QStringView>

#include <optional>

// Reads a hexadecimal number the lenient way a text scanner does: leading
// blanks skipped, an optional 0x or 0X prefix, then the longest run of hex
// digits; whatever follows is ignored. Nothing is read only when no digit
// stands at the start. A lone "0" before a non-digit (as in "0xZZ") reads 0.
// Values too large for 64 bits saturate.
std::optional<quint64> scanHexNumber(QStringView text);
