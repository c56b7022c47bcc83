#pragma once

#include <QWidget>

class AddToPaletteFlow;
class ColorListModel;
class EmptyState;
class HistoryStorage;
class PaletteStorage;
class QPushButton;
class StyledListView;

// The History tab: "Recent Colors" with "Clear", then either the empty
// state or the stored colors newest first, each a swatch beside its hex
// code. A click copies the hex code; the context menu copies, files the
// color into a palette or removes it.
class HistoryTab : public QWidget
{
    Q_OBJECT

public:
    HistoryTab(HistoryStorage &historyStorage, PaletteStorage &paletteStorage, QWidget *parent = nullptr);

    StyledListView *list() const { return m_list; }
    AddToPaletteFlow &addToPalette() const { return *m_addToPalette; }
    // A row's "Add to Palette".
    void showAddSheet(const QModelIndex &row);

private:
    void showMenu(const QModelIndex &row, const QPoint &at);
    void refresh();

    HistoryStorage &m_historyStorage;
    AddToPaletteFlow *m_addToPalette;
    ColorListModel *m_model;
    QPushButton *m_clearButton;
    StyledListView *m_list;
    EmptyState *m_emptyState;
};
