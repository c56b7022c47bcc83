#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

// Symbol icons by the names the interface uses ("eyedropper", "clock",
// "swatchpalette", "arrow.triangle.2.circlepath", "circle.lefthalf.filled",
// "clipboard", "checkmark", "plus", "chevron.left", "chevron.right",
// "chevron.up.chevron.down", "xmark", "minus", "square.and.arrow.down"),
// drawn from embedded SVGs in one color, at the size and device pixel ratio
// they are painted at, and cached.
namespace Icons {

QPixmap pixmap(const QString &symbolName, const QColor &color, int logicalSize, qreal devicePixelRatio);

} // namespace Icons
