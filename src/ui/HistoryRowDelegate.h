#pragma once

#include <QStyledItemDelegate>

// A line of the history: the color's swatch (40 x 32) and, beside it, its
// hex code across the rest of the row, which lights up under the pointer
// and carries the focus ring.
class HistoryRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
