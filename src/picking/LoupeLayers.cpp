#include "LoupeLayers.h"

#include "picking/LoupeGeometry.h"
#include "picking/LoupeShadow.h"

#include <QPainter>
#include <QPalette>

namespace {

QImage transparentLayer(double loupeSize, double ratio)
{
    const int side = qCeil((loupeSize + 2 * LoupeLayers::margin) * ratio);
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(ratio);
    return image;
}

} // namespace

LoupeLayers::LoupeLayers(double loupeSize, double devicePixelRatio, const QPalette &palette)
    : m_under(transparentLayer(loupeSize, devicePixelRatio))
    , m_over(transparentLayer(loupeSize, devicePixelRatio))
{
    const QRectF loupe(margin, margin, loupeSize, loupeSize);
    {
        QPainter painter(&m_under);
        const QRectF background = loupe.adjusted(-2, -2, 2, 2);
        LoupeShadow::draw(painter, background, devicePixelRatio);
        painter.fillRect(background, palette.color(QPalette::Window));
        QColor separator = palette.color(QPalette::WindowText);
        separator.setAlphaF(0.1f);
        painter.setRenderHint(QPainter::Antialiasing, true);
        painter.setPen(QPen(separator, 1.0));
        painter.drawRect(loupe.adjusted(-1, -1, 1, 1));
    }
    {
        using namespace LoupeGeometry;
        QPainter painter(&m_over);
        painter.setRenderHint(QPainter::Antialiasing, true);
        painter.setPen(QPen(QColor(0, 0, 0, qRound(0.15 * 255)), 0.5));
        for (int row = -gridReach; row <= gridReach; ++row) {
            for (int column = 0; column < gridSize; ++column)
                painter.drawRect(gridCellRect(loupe, column, row));
        }
        const QRectF centre = gridCellRect(loupe, gridReach, 0);
        painter.setPen(QPen(Qt::white, 3.0));
        painter.drawRect(centre.adjusted(1, 1, -1, -1));
        painter.setPen(QPen(Qt::black, 1.0));
        painter.drawRect(centre.adjusted(2, 2, -2, -2));
    }
}

void LoupeLayers::drawUnderGrid(QPainter &painter, const QRectF &loupe) const
{
    painter.drawImage(loupe.topLeft() - QPointF(margin, margin), m_under);
}

void LoupeLayers::drawOverGrid(QPainter &painter, const QRectF &loupe) const
{
    painter.drawImage(loupe.topLeft() - QPointF(margin, margin), m_over);
}
