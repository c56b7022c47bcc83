#pragma once

#include <QStyledItemDelegate>

// A palette in the Palettes list: a card with the name, the number of
// colors and a chevron on top, and a strip of all its colors below (grey
// when it has none).
class PaletteCardDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
