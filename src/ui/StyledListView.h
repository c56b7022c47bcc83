#pragma once

#include <QListView>

class QStyleOptionViewItem;

// A list in the window's look: transparent over the window's background,
// scrolled by pixels, no selection. What the
// user does to a row comes out as three signals: triggered (click, Return,
// Enter, Space), copyRequested (Ctrl+C) and menuRequested (right click,
// the Menu key, Shift+F10; from the keyboard the menu opens at the row).
class StyledListView : public QListView
{
    Q_OBJECT

public:
    explicit StyledListView(QWidget *parent = nullptr);

    void setModel(QAbstractItemModel *model) override;

    // The rows take the pointing-hand cursor (they act on a click).
    void setRowsClickable(bool clickable);
    // Room around the rows that does not scroll with them.
    void setPadding(int padding) { setViewportMargins(padding, padding, padding, padding); }

    // Whether the row being painted shows the focus ring: it is the current
    // row and focus arrived or moved by keyboard.
    static bool showsFocusRing(const QStyleOptionViewItem &option);

signals:
    void triggered(const QModelIndex &index);
    void copyRequested(const QModelIndex &index);
    void menuRequested(const QModelIndex &index, const QPoint &globalPos);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void rowsAboutToBeRemoved(const QModelIndex &parent, int start, int end) override;

private:
    // False when there is no current row.
    bool requestMenuAtCurrentRow();

    int m_currentRowRemoved = -1;
    bool m_rowsClickable = false;
};
