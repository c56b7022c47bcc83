#include "HistoryRowDelegate.h"

#include "StyledListView.h"
#include "Theme.h"

#include <QPainter>

namespace {
constexpr int swatchWidth = 40;
constexpr int rowHeight = 32;
constexpr int columnSpacing = 12;
} // namespace

void HistoryRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                               const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRect swatch(option.rect.topLeft(), QSize(swatchWidth, rowHeight));
    Theme::paintRoundedCard(*painter, swatch, 6, index.data(Qt::DecorationRole).value<QColor>(),
                            QColor(255, 255, 255, 38), 0.5);

    const QRect row = option.rect.adjusted(swatchWidth + columnSpacing, 0, 0, 0);
    const bool hovered = option.state & QStyle::State_MouseOver;
    const bool focusRing = StyledListView::showsFocusRing(option);
    if (hovered || focusRing) {
        painter->setPen(focusRing ? QPen(Theme::accent(), 1.5) : Qt::NoPen);
        painter->setBrush(QColor(255, 255, 255, hovered ? 13 : 0));
        painter->drawRoundedRect(QRectF(row).adjusted(0.75, 0.75, -0.75, -0.75), 6, 6);
    }
    painter->setPen(Theme::primaryText());
    painter->setFont(Theme::font(13));
    painter->drawText(row.adjusted(6, 0, -6, 0), Qt::AlignLeft | Qt::AlignVCenter, index.data().toString());
    painter->restore();
}

QSize HistoryRowDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return {swatchWidth + columnSpacing + 80, rowHeight};
}
