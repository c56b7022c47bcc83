#pragma once

#include "picking/SampledColor.h"

#include <QImage>
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

inline constexpr double loupeSize = 140.0;          // side of the loupe square
inline constexpr int gridSizes[] = {7, 11, 15, 21}; // magnified pixels per side, by zoom
inline constexpr int defaultGridSize = 11;
// The device pixels a pick averages: the one under the pointer, or a
// square of them around it.
inline constexpr int areaSizes[] = {1, 3, 5, 9};
inline constexpr double readoutHeight = 22.0; // the strip with the HEX a click would pick
inline constexpr double pointerGap = 25.0;    // pointer to loupe corner
inline constexpr double edgeMargin = 10.0;    // kept free at screen edges

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

// The readout strip of a loupe square: on its side away from the pointer,
// so that it never covers the crosshair. loupeRect() keeps room for it
// when given a frame narrowed by readoutHeight at top and bottom.
QRectF readoutRect(const QRectF &loupe, QPointF cursor);

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

// Cell (column 0..n-1, row offset -n/2..+n/2) of the magnified grid of n
// cells a side inside the loupe square; row -n/2 is the top row.
QRectF gridCellRect(const QRectF &loupe, int column, int rowOffset, int gridSize = defaultGridSize);

// The device pixels a pick of the given area takes around a pixel: those
// of the square that lie on the screen.
QRect sampleArea(PixelIndex centre, int areaSize, const QRect &screenPixels);

// The mean of the pixels' 8-bit sRGB components over 255, unrounded; the
// rectangle must lie within the image and be non-empty.
SampledColor meanColor(const QImage &image, const QRect &pixels);

} // namespace LoupeGeometry
