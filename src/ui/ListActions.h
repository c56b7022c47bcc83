#pragma once

#include "model/PaletteExchange.h"

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
//   palette card:    click opens;  menu "Export…", "Copy as CSS", "Delete"
//   palette color:   Ctrl+C copies; menu "Copy Hex", "Delete"
//   open palette:    menu "Export…", "Copy as CSS"
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
    // A palette's own menu, for the open palette; the caller owns it.
    QMenu *createPaletteMenu(const QUuid &paletteId, QWidget *parent);

    // Asks for a file (the save dialog offers every format, .gpl first)
    // and exports the palette to it.
    void exportPalette(const QUuid &paletteId, QWidget *dialogParent);
    // Writes the palette in the format the path's suffix names; a path
    // without a known suffix gets the suffix of `format` and that format.
    void exportPaletteToFile(const QUuid &paletteId, const QString &path, ExchangeFormat format);
    // The palette as CSS custom properties, on the clipboard.
    void copyPaletteAsCss(const QUuid &paletteId);

signals:
    void paletteOpened(const QUuid &paletteId);
    void addToPaletteRequested(const QUuid &colorId);
    void paletteExported(const QString &fileName);
    void exportFailed(const QString &fileName, const QString &why);

private:
    void addPaletteItems(QMenu *menu, const QUuid &paletteId);

    PaletteStorage &m_paletteStorage;
    HistoryStorage &m_historyStorage;
    // Where the last export went, for the next one.
    QString m_exportFolder;
};
