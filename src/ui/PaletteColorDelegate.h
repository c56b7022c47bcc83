#pragma once

#include <QStyledItemDelegate>

// A color of an open palette: a swatch, then the color's name over its hex
// text; a card behind it while hovered or focused.
class PaletteColorDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
