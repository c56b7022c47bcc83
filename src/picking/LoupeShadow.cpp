#include "LoupeShadow.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <vector>

namespace LoupeShadow {

namespace {

constexpr double offsetDown = 2.0;
constexpr double blurRadius = 4.0; // three box passes: about an 8-point blur
constexpr int passes = 3;
constexpr double spread = blurRadius * passes;

// One box-blur pass over the alpha of a premultiplied black image, along
// rows (horizontal) or columns.
void boxBlur(QImage &image, int radius, bool horizontal)
{
    const int lines = horizontal ? image.height() : image.width();
    const int length = horizontal ? image.width() : image.height();
    std::vector<int> source(static_cast<size_t>(length));
    for (int line = 0; line < lines; ++line) {
        auto at = [&](int i) -> QRgb & {
            const int x = horizontal ? i : line;
            const int y = horizontal ? line : i;
            return reinterpret_cast<QRgb *>(image.scanLine(y))[x];
        };
        for (int i = 0; i < length; ++i)
            source[size_t(i)] = qAlpha(at(i));
        int sum = 0;
        for (int i = -radius; i <= radius; ++i)
            sum += (i >= 0 && i < length) ? source[size_t(i)] : 0;
        const int window = 2 * radius + 1;
        for (int i = 0; i < length; ++i) {
            at(i) = qRgba(0, 0, 0, sum / window);
            const int leaving = i - radius;
            const int entering = i + radius + 1;
            if (leaving >= 0)
                sum -= source[size_t(leaving)];
            if (entering < length)
                sum += source[size_t(entering)];
        }
    }
}

QImage render(QSizeF casting, double ratio)
{
    const QSize pixels((QSizeF(casting.width() + 2 * spread, casting.height() + 2 * spread) * ratio)
                           .toSize());
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.scale(ratio, ratio);
        painter.fillRect(QRectF(QPointF(spread, spread), casting), QColor(0, 0, 0, 77));
    }
    const int radius = std::max(1, qRound(blurRadius * ratio));
    for (int pass = 0; pass < passes; ++pass) {
        boxBlur(image, radius, true);
        boxBlur(image, radius, false);
    }
    image.setDevicePixelRatio(ratio);
    return image;
}

} // namespace

void draw(QPainter &painter, const QRectF &casting, double devicePixelRatio)
{
    static QImage cached;
    static QSizeF cachedSize;
    static double cachedRatio = 0.0;
    if (cached.isNull() || cachedSize != casting.size() || cachedRatio != devicePixelRatio) {
        cached = render(casting.size(), devicePixelRatio);
        cachedSize = casting.size();
        cachedRatio = devicePixelRatio;
    }
    painter.drawImage(casting.topLeft() + QPointF(-spread, -spread + offsetDown), cached);
}

} // namespace LoupeShadow
