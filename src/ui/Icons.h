#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

// Symbol icons by the names the interface uses ("eyedropper", "clock",
// "swatchpalette", "arrow.triangle.2.circlepath", "circle.lefthalf.filled",
// "clipboard", "checkmark", "plus", "chevron.left", "chevron.right",
// "chevron.up.chevron.down", "xmark", "minus"), drawn from embedded SVGs in the given color, crisp at
// any device pixel ratio. Icons are drawn lazily, at the size and ratio
// they are painted at, and cached.
namespace Icons {

QIcon icon(const QString &symbolName, const QColor &color);

// The icon rendered at a logical size for a device pixel ratio.
QPixmap pixmap(const QString &symbolName, const QColor &color, int logicalSize, qreal devicePixelRatio);

// Whether an SVG for the symbol is embedded.
bool exists(const QString &symbolName);

} // namespace Icons
