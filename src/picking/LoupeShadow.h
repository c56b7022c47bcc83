#pragma once

#include <QRectF>

class QPainter;

// The soft drop shadow under the loupe: black at 30 %, 2 points down,
// blurred by 8. Rendered once per size and pixel ratio, then only copied,
// so a redraw costs one small image draw.
namespace LoupeShadow {

// How far beyond the loupe square the shadow can reach, in points.
inline constexpr double margin = 16.0;

void draw(QPainter &painter, const QRectF &casting, double devicePixelRatio);

} // namespace LoupeShadow
