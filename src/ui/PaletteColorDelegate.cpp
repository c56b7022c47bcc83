#include "PaletteColorDelegate.h"

#include "ElidedLabel.h"
#include "StoreListModel.h"
#include "StyledListView.h"
#include "Theme.h"

#include <QPainter>

namespace {
constexpr int padding = 8;
constexpr int swatchSize = 28;
constexpr int rowHeight = 44;
} // namespace

void PaletteColorDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRect r = option.rect;
    const bool hovered = option.state & QStyle::State_MouseOver;
    const bool focusRing = StyledListView::showsFocusRing(option);
    if (hovered || focusRing)
        Theme::paintCard(*painter, r, hovered, focusRing);

    const QRectF swatch(r.left() + padding, r.top() + (r.height() - swatchSize) / 2.0, swatchSize,
                        swatchSize);
    Theme::paintRoundedCard(*painter, swatch, 6, index.data(Qt::DecorationRole).value<QColor>(),
                            QColor(255, 255, 255, 51), 0.5);

    const int textLeft = int(swatch.right()) + 10;
    const int textWidth = r.right() + 1 - textLeft - padding;
    const QFont nameFont = Theme::font(14, QFont::Medium);
    const QFont hexFont = Theme::monospaceFont(11);
    const QFontMetrics nameMetrics(nameFont);
    const QFontMetrics hexMetrics(hexFont);
    const int top = r.top() + (r.height() - nameMetrics.height() - 1 - hexMetrics.height()) / 2;
    const QString name = ElidedLabel::singleLine(index.data().toString());
    painter->setFont(nameFont);
    painter->setPen(Theme::primaryText());
    painter->drawText(QRect(textLeft, top, textWidth, nameMetrics.height()), Qt::AlignLeft | Qt::AlignVCenter,
                      nameMetrics.elidedText(name, Qt::ElideRight, textWidth));
    painter->setFont(hexFont);
    painter->setPen(Theme::secondaryText());
    painter->drawText(
        QRect(textLeft, top + nameMetrics.height() + 1, textWidth, hexMetrics.height()),
        Qt::AlignLeft | Qt::AlignVCenter,
        hexMetrics.elidedText(index.data(StoreListModel::HexRole).toString(), Qt::ElideRight, textWidth));
    painter->restore();
}

QSize PaletteColorDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return {200, rowHeight};
}
