#include "PaletteCardDelegate.h"

#include "ElidedLabel.h"
#include "Icons.h"
#include "StoreListModel.h"
#include "StyledListView.h"
#include "Theme.h"

#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int padding = 10;
constexpr int topLineHeight = 18;
constexpr int lineSpacing = 8;
constexpr int stripHeight = 16;
constexpr int chevronSize = 10;

void paintStrip(QPainter &painter, const QRectF &rect, const QList<QColor> &colors)
{
    QPainterPath rounded;
    rounded.addRoundedRect(rect, 4, 4);
    if (colors.isEmpty()) {
        painter.fillPath(rounded, Theme::withAlpha(Theme::secondaryText(), 0.1));
        return;
    }
    // Segment edges on whole pixels, so neighbours meet without seams.
    const qsizetype n = colors.size();
    for (qsizetype i = 0; i < n; ++i) {
        const qreal left = rect.left() + qRound(rect.width() * qreal(i) / qreal(n));
        const qreal right = rect.left() + qRound(rect.width() * qreal(i + 1) / qreal(n));
        if (right <= left)
            continue;
        QPainterPath segment;
        segment.addRect(QRectF(left, rect.top(), right - left, rect.height()));
        painter.fillPath(rounded.intersected(segment), colors.at(i));
    }
}

} // namespace

void PaletteCardDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    Theme::paintCard(*painter, option.rect, option.state & QStyle::State_MouseOver,
                     StyledListView::showsFocusRing(option));

    const QRect content = option.rect.adjusted(padding, padding, -padding, -padding);
    const QRect topLine(content.left(), content.top(), content.width(), topLineHeight);

    // Trailing side first: chevron, then the count; the name takes the rest.
    const QRect chevron(topLine.right() - chevronSize + 1, topLine.center().y() - chevronSize / 2,
                        chevronSize, chevronSize);
    const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    painter->drawPixmap(
        chevron, Icons::pixmap(QStringLiteral("chevron.right"), Theme::secondaryText(), chevronSize, ratio));

    const QString count = index.data(StoreListModel::CountRole).toString();
    const QFont countFont = Theme::font(11);
    const int countWidth = QFontMetrics(countFont).horizontalAdvance(count);
    const QRect countRect(chevron.left() - 6 - countWidth, topLine.top(), countWidth, topLine.height());
    painter->setFont(countFont);
    painter->setPen(Theme::secondaryText());
    painter->drawText(countRect, Qt::AlignRight | Qt::AlignVCenter, count);

    const QFont nameFont = Theme::font(13, QFont::Medium);
    const QRect nameRect(topLine.left(), topLine.top(), countRect.left() - 8 - topLine.left(),
                         topLine.height());
    const QString name = ElidedLabel::singleLine(index.data().toString());
    painter->setFont(nameFont);
    painter->setPen(Theme::primaryText());
    painter->drawText(nameRect, Qt::AlignLeft | Qt::AlignVCenter,
                      QFontMetrics(nameFont).elidedText(name, Qt::ElideRight, nameRect.width()));

    paintStrip(*painter,
               QRectF(content.left(), topLine.bottom() + 1 + lineSpacing, content.width(), stripHeight),
               index.data(StoreListModel::StripRole).value<QList<QColor>>());
    painter->restore();
}

QSize PaletteCardDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return {200, padding + topLineHeight + lineSpacing + stripHeight + padding};
}
