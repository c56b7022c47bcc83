#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

// Symbol icons by the names the interface uses ("eyedropper", "clock",
// "swatchpalette", "arrow.triangle.2.circlepath", "circle.lefthalf.filled",
// "clipboard", "checkmark", "plus", "chevron.left", "chevron.right",
// "xmark", "minus"), drawn from embedded SVGs in the given color, crisp at
// any device pixel ratio.
namespace Icons {

QIcon icon(const QString &symbolName, const QColor &color);

// The icon rendered at a logical size for a device pixel ratio.
QPixmap pixmap(const QString &symbolName, const QColor &color, int logicalSize, qreal devicePixelRatio);

} // namespace Icons
