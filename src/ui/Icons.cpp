#include "Icons.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace Icons {

QPixmap pixmap(const QString &symbolName, const QColor &color, int logicalSize, qreal devicePixelRatio)
{
    const int side = qMax(1, qRound(logicalSize * devicePixelRatio));
    QPixmap result(side, side);
    result.fill(Qt::transparent);
    QSvgRenderer renderer(QStringLiteral(":/icons/%1.svg").arg(symbolName));
    if (renderer.isValid()) {
        QPainter painter(&result);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter);
        // Tint: keep the shape, take the color.
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(result.rect(), color);
    }
    result.setDevicePixelRatio(devicePixelRatio);
    return result;
}

QIcon icon(const QString &symbolName, const QColor &color)
{
    QIcon result;
    for (int size : {10, 12, 14, 16, 24, 32})
        for (qreal dpr : {1.0, 2.0})
            result.addPixmap(pixmap(symbolName, color, size, dpr));
    return result;
}

} // namespace Icons
