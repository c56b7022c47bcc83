#include "LoupeGeometry.h"

#include <QtGlobal>

#include <cmath>
#include <limits>

namespace LoupeGeometry {

QRectF loupeRect(QPointF cursor, const QRectF &screenFrame, double size)
{
    const double screenLeft = screenFrame.x();
    const double screenTop = screenFrame.y();
    const double screenRight = screenFrame.x() + screenFrame.width();
    const double screenBottom = screenFrame.y() + screenFrame.height();

    double left = cursor.x() + pointerGap;
    double top = cursor.y() - pointerGap - size;
    if (screenRight < left + size + edgeMargin)
        left = cursor.x() - size - pointerGap;
    if (top < screenTop + edgeMargin)
        top = cursor.y() + pointerGap;
    if (left < screenLeft + edgeMargin)
        left = cursor.x() + pointerGap;
    if (top + size > screenBottom - edgeMargin)
        top = cursor.y() - pointerGap - size;
    return QRectF(left, top, size, size);
}

static std::int64_t toPixel(double value)
{
    const double truncated = std::trunc(value);
    // 2^63 is exactly representable; anything at or beyond it does not fit.
    constexpr double limit = 9223372036854775808.0;
    if (!std::isfinite(truncated) || truncated >= limit || truncated < -limit)
        qFatal("Pointer position %f cannot be turned into a pixel index", value);
    return static_cast<std::int64_t>(truncated);
}

PixelIndex pixelIndex(QPointF point, const QRectF &screenFrame, double devicePixelRatio)
{
    return {toPixel(devicePixelRatio * (point.x() - screenFrame.x())),
            toPixel(devicePixelRatio * (point.y() - screenFrame.y()))};
}

QPointF clampToScreen(QPointF point, const QRectF &screenFrame)
{
    const double right = screenFrame.x() + screenFrame.width();
    const double bottom = screenFrame.y() + screenFrame.height();
    double x = point.x();
    double y = point.y();
    if (x > right - 1)
        x = right - 1;
    if (x < screenFrame.x())
        x = screenFrame.x();
    if (y > bottom - 1)
        y = bottom - 1;
    if (y < screenFrame.y())
        y = screenFrame.y();
    return {x, y};
}

SampledColor colorFromPixel(QRgb pixel)
{
    const QRgb premultiplied = qPremultiply(pixel);
    const double alpha = qAlpha(premultiplied) / 255.0;
    return {qRed(premultiplied) / 255.0, qGreen(premultiplied) / 255.0, qBlue(premultiplied) / 255.0,
            alpha > 0.0 ? 1.0 : alpha};
}

QRectF gridCellRect(const QRectF &loupe, int column, int rowOffset)
{
    const double cell = loupe.width() / gridSize;
    return QRectF(loupe.x() + cell * column, loupe.y() + cell * (rowOffset + gridReach), cell, cell);
}

} // namespace LoupeGeometry
