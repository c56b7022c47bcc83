#pragma once

#include "model/ColorItem.h"

#include <QString>
#include <QStringList>

#include <optional>

// The notations a pick from the command line can print, by the names the
// command line takes; the texts are the ones the window shows.
enum class PickFormat { Hex, Rgb, Hsl, Oklch, Cmyk };

namespace PickFormats {
QStringList names();
QString name(PickFormat format);
std::optional<PickFormat> fromName(const QString &name);
QString text(const ColorItem &color, PickFormat format);
} // namespace PickFormats
