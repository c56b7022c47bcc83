#include "StyledListView.h"

#include "DarkStyle.h"

#include <QContextMenuEvent>
#include <QHoverEvent>
#include <QKeyEvent>

#include <utility>

StyledListView::StyledListView(QWidget *parent)
    : QListView(parent)
{
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setUniformItemSizes(true);
    // The rows sit on the window's own layers.
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    viewport()->setAttribute(Qt::WA_Hover);
    connect(this, &QAbstractItemView::clicked, this, &StyledListView::triggered);
}

void StyledListView::setModel(QAbstractItemModel *model)
{
    QListView::setModel(model);
    // The row that takes a removed current row's place becomes current (Qt
    // would take the one above).
    connect(model, &QAbstractItemModel::rowsRemoved, this, [this, model] {
        const int row = std::exchange(m_currentRowRemoved, -1);
        if (row >= 0 && model->rowCount() > 0)
            setCurrentIndex(model->index(qMin(row, model->rowCount() - 1), 0));
    });
}

void StyledListView::rowsAboutToBeRemoved(const QModelIndex &parent, int start, int end)
{
    const int current = currentIndex().row();
    m_currentRowRemoved = current >= start && current <= end ? start : -1;
    QListView::rowsAboutToBeRemoved(parent, start, end);
}

void StyledListView::setRowsClickable(bool clickable)
{
    m_rowsClickable = clickable;
}

bool StyledListView::showsFocusRing(const QStyleOptionViewItem &option)
{
    return (option.state & QStyle::State_HasFocus) && DarkStyle::showsFocusRing(option.widget);
}

void StyledListView::keyPressEvent(QKeyEvent *event)
{
    const QModelIndex current = currentIndex();
    if (event->matches(QKeySequence::Copy)) {
        if (current.isValid())
            emit copyRequested(current);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (current.isValid() && !event->isAutoRepeat())
            emit triggered(current);
        return;
    case Qt::Key_F10:
        if (event->modifiers() & Qt::ShiftModifier) {
            // With no row to show a menu for, the list's owner may have one.
            if (!requestMenuAtCurrentRow())
                event->ignore();
            return;
        }
        break;
    default:
        break;
    }
    QListView::keyPressEvent(event);
    viewport()->update();
}

void StyledListView::contextMenuEvent(QContextMenuEvent *event)
{
    if (event->reason() != QContextMenuEvent::Mouse) {
        if (!requestMenuAtCurrentRow())
            event->ignore();
        return;
    }
    const QModelIndex index = indexAt(viewport()->mapFromGlobal(event->globalPos()));
    if (index.isValid())
        emit menuRequested(index, event->globalPos());
    else
        event->ignore(); // the list's background belongs to its owner
}

bool StyledListView::requestMenuAtCurrentRow()
{
    const QModelIndex current = currentIndex();
    if (!current.isValid())
        return false;
    scrollTo(current);
    emit menuRequested(current, viewport()->mapToGlobal(visualRect(current).center()));
    return true;
}

bool StyledListView::viewportEvent(QEvent *event)
{
    if (m_rowsClickable && event->type() == QEvent::HoverMove) {
        const bool onRow = indexAt(static_cast<QHoverEvent *>(event)->position().toPoint()).isValid();
        viewport()->setCursor(onRow ? Qt::PointingHandCursor : Qt::ArrowCursor);
    }
    return QListView::viewportEvent(event);
}
