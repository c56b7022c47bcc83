#pragma once

#include "picking/SampledColor.h"

#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QRgb>

#include <cstdint>

// The loupe's arithmetic, kept free of widgets so that it can be checked on
// its own. All points are global, in device-independent points, with Qt's
// top-left origin; a screen is described by its geometry in those points
// and its device pixel ratio.
namespace LoupeGeometry {

inline constexpr double loupeSize = 140.0; // side of the loupe square
inline constexpr int gridSize = 11;        // magnified pixels per side
inline constexpr int gridReach = gridSize / 2;
inline constexpr double pointerGap = 25.0; // pointer to loupe corner
inline constexpr double edgeMargin = 10.0; // kept free at screen edges

struct PixelIndex
{
    std::int64_t x = 0;
    std::int64_t y = 0;
    friend bool operator==(const PixelIndex &, const PixelIndex &) = default;
};

// Where the loupe square goes for a pointer on a screen: above and to the
// right of the pointer, flipped to the left or below when it would come
// within the margin of the right or top edge, and flipped back when that
// would leave the screen on the other side.
QRectF loupeRect(QPointF cursor, const QRectF &screenFrame, double size = loupeSize);

// The device pixel under a point: the offset from the screen's top-left
// corner scaled by the device pixel ratio, truncated towards zero. A point
// that a device pixel's own position became in points counts as that
// pixel, though the division by a fractional ratio may have left it a hair
// short. A point that cannot be turned into a 64-bit index aborts: it
// means the pointer position itself is corrupt.
PixelIndex pixelIndex(QPointF point, const QRectF &screenFrame, double devicePixelRatio);

// The point in the middle of a device pixel, which pixelIndex() maps back
// to that pixel at any ratio.
QPointF pixelCentre(PixelIndex pixel, const QRectF &screenFrame, double devicePixelRatio);

// A device pixel kept on a screen of the given pixels: x in [left, right],
// y in [top, bottom], with the lower bound winning when both cannot hold.
PixelIndex clampToScreen(PixelIndex pixel, const QRect &screenPixels);

// The color of one captured pixel. Components are the premultiplied bytes
// over 255; any non-zero alpha counts as fully opaque.
SampledColor colorFromPixel(QRgb pixel);

// Cell (column 0..10, row offset -5..+5) of the magnified grid inside the
// loupe square; row -5 is the top row.
QRectF gridCellRect(const QRectF &loupe, int column, int rowOffset);

} // namespace LoupeGeometry
