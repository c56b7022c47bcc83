#pragma once

#include <QWidget>

class AddToPaletteFlow;
class ColorListModel;
class EmptyState;
class HistoryStorage;
class ListActions;
class PaletteStorage;
class StyledButton;
class StyledListView;

// The History tab: "Recent Colors" with "Clear", then either the empty
// state or the stored colors newest first, each a swatch beside its hex
// code. A click copies the hex code; the context menu copies, files the
// color into a palette or removes it.
class HistoryTab : public QWidget
{
    Q_OBJECT

public:
    HistoryTab(HistoryStorage &historyStorage, PaletteStorage &paletteStorage, ListActions &listActions,
               QWidget *parent = nullptr);

    StyledListView *list() const { return m_list; }
    AddToPaletteFlow &addToPalette() const { return *m_addToPalette; }
    // A row's "Add to Palette".
    void showAddSheet(const QUuid &colorId);

private:
    void refresh();

    HistoryStorage &m_historyStorage;
    AddToPaletteFlow *m_addToPalette;
    StyledButton *m_clearButton;
    StyledListView *m_list;
    EmptyState *m_emptyState;
};
