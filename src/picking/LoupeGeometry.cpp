#include "LoupeGeometry.h"

#include <QtGlobal>

#include <algorithm>
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
    // A device pixel's position divided by a ratio like 1.5 and multiplied
    // back may come out a few units in the last place short of it; no
    // pointer ever rests that close to a pixel's edge on purpose.
    constexpr double slack = 1e-6;
    const double truncated = std::trunc(value + (value < 0 ? -slack : slack));
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

QPointF pixelCentre(PixelIndex pixel, const QRectF &screenFrame, double devicePixelRatio)
{
    return {screenFrame.x() + (double(pixel.x) + 0.5) / devicePixelRatio,
            screenFrame.y() + (double(pixel.y) + 0.5) / devicePixelRatio};
}

PixelIndex clampToScreen(PixelIndex pixel, const QRect &screenPixels)
{
    const auto clamp = [](std::int64_t value, std::int64_t low, std::int64_t high) {
        return value > high ? std::max(low, high) : std::max(value, low);
    };
    return {clamp(pixel.x, screenPixels.left(), screenPixels.right()),
            clamp(pixel.y, screenPixels.top(), screenPixels.bottom())};
}

SampledColor colorFromPixel(QRgb pixel)
{
    const QRgb premultiplied = qPremultiply(pixel);
    const double alpha = qAlpha(premultiplied) / 255.0;
    return {qRed(premultiplied) / 255.0, qGreen(premultiplied) / 255.0, qBlue(premultiplied) / 255.0,
            alpha > 0.0 ? 1.0 : alpha};
}

QRectF gridCellRect(const QRectF &loupe, int column, int rowOffset, int gridSize)
{
    const double cell = loupe.width() / gridSize;
    return QRectF(loupe.x() + cell * column, loupe.y() + cell * (rowOffset + gridSize / 2), cell, cell);
}

QRectF readoutRect(const QRectF &loupe, QPointF cursor)
{
    const bool above = loupe.bottom() <= cursor.y();
    return QRectF(loupe.x(), above ? loupe.y() - readoutHeight : loupe.bottom(), loupe.width(),
                  readoutHeight);
}

QRect sampleArea(PixelIndex centre, int areaSize, const QRect &screenPixels)
{
    const std::int64_t reach = areaSize / 2;
    const std::int64_t left = std::max<std::int64_t>(centre.x - reach, screenPixels.left());
    const std::int64_t top = std::max<std::int64_t>(centre.y - reach, screenPixels.top());
    const std::int64_t right = std::min<std::int64_t>(centre.x + reach, screenPixels.right());
    const std::int64_t bottom = std::min<std::int64_t>(centre.y + reach, screenPixels.bottom());
    if (left > right || top > bottom)
        return {};
    return QRect(QPoint(int(left), int(top)), QPoint(int(right), int(bottom)));
}

SampledColor meanColor(const QImage &image, const QRect &pixels)
{
    // Whole-number sums, then the mean over 255: no rounding on the way.
    qint64 red = 0, green = 0, blue = 0, opaque = 0;
    for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
        for (int x = pixels.left(); x <= pixels.right(); ++x) {
            const QRgb pixel = qPremultiply(image.pixel(x, y));
            red += qRed(pixel);
            green += qGreen(pixel);
            blue += qBlue(pixel);
            opaque += qAlpha(pixel) > 0 ? 1 : 0;
        }
    }
    const double count = double(pixels.width()) * pixels.height();
    return {double(red) / count / 255.0, double(green) / count / 255.0, double(blue) / count / 255.0,
            double(opaque) / count};
}

} // namespace LoupeGeometry
