#pragma once

#include <QObject>
#include <QUuid>

class HistoryStorage;
class PaletteStorage;
class QMenu;
class QModelIndex;
class QWidget;
class StyledListView;

// The one place where what the user does to a row of a list reaches the
// stores: the history, the palette list and an open palette. A row is
// identified by its model (ColorListModel or PaletteListModel) and id.
//
//   history row:     click copies; menu "Copy Hex", "Add to Palette", "Remove"
//   palette card:    click opens;  menu "Delete"
//   palette color:   Ctrl+C copies; menu "Copy Hex", "Delete"
//
// Destructive items act at once. Opening a palette and filing a color into
// one are left to the tab, through paletteOpened and addToPaletteRequested.
class ListActions : public QObject
{
    Q_OBJECT

public:
    ListActions(PaletteStorage &paletteStorage, HistoryStorage &historyStorage, QObject *parent = nullptr);

    // Connects the list's triggered, copyRequested and menuRequested here.
    void attach(StyledListView *list);

    void trigger(const QModelIndex &index);
    void copyHex(const QModelIndex &index);
    // The row's destructive item: "Remove" from the history, "Delete" of a
    // palette or of a color from its palette.
    void remove(const QModelIndex &index);
    // The row's context menu; the caller owns it.
    QMenu *createMenu(const QModelIndex &index, QWidget *parent);

signals:
    void paletteOpened(const QUuid &paletteId);
    void addToPaletteRequested(const QUuid &colorId);

private:
    PaletteStorage &m_paletteStorage;
    HistoryStorage &m_historyStorage;
};
