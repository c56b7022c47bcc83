#include "CardPainting.h"

#include "Theme.h"

#include <QLinearGradient>
#include <QPainter>

namespace CardPainting {

void paintCard(QPainter &painter, const QRectF &rect, bool hovered, bool focused)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor fill = hovered ? Theme::withAlpha(Theme::material(), 2.0) : Theme::material();
    if (focused) {
        Theme::paintRoundedCard(painter, rect, cornerRadius, fill, Theme::accent(), 1.0);
    } else {
        const QRectF r = rect.adjusted(0.25, 0.25, -0.25, -0.25);
        QLinearGradient border(r.topLeft(), r.bottomRight());
        border.setColorAt(0, QColor(255, 255, 255, 51)); // white at 0.2
        border.setColorAt(1, Qt::transparent);
        painter.setPen(QPen(QBrush(border), 0.5));
        painter.setBrush(fill);
        painter.drawRoundedRect(r, cornerRadius, cornerRadius);
    }
    painter.restore();
}

} // namespace CardPainting
