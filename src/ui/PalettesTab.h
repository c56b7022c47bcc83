#pragma once

#include <QPointer>
#include <QUuid>
#include <QWidget>

#include <optional>

class EmptyState;
class NoticeLine;
class PaletteDetail;
class PaletteListModel;
class PaletteFiles;
class PaletteStorage;
class QPushButton;
class StyledListView;
class TextPromptDialog;

// The Palettes tab: the list of palettes (or the empty state), with "+" to
// make a new one and "Import Palette…" beside it, or one palette opened in
// detail. The tab keeps only which palette is open; when that palette
// disappears, from here or anywhere else, the list shows again. How an
// import or export ended shows in one line at the bottom of the tab.
class PalettesTab : public QWidget
{
    Q_OBJECT

public:
    PalettesTab(PaletteStorage &paletteStorage, PaletteFiles &paletteFiles, QWidget *parent = nullptr);

    // The open palette's id; none while the list shows.
    std::optional<QUuid> selectedPaletteId() const;
    void openPalette(const QUuid &id);
    void showList();
    // The "New Palette" prompt, as "+" and "Create Palette" open it.
    void showNewPalettePrompt();

    TextPromptDialog *newPalettePrompt() const;
    StyledListView *list() const { return m_list; }
    PaletteDetail *detail() const;
    NoticeLine *notice() const { return m_notice; }

private:
    void refresh();
    void showMenu(const QModelIndex &row, const QPoint &at);
    // After an import: the list, with the last palette imported in view.
    void showImported(const QUuid &id);

    PaletteStorage &m_paletteStorage;
    PaletteFiles &m_paletteFiles;
    QWidget *m_listPage;
    PaletteListModel *m_model;
    StyledListView *m_list;
    EmptyState *m_emptyState;
    QPushButton *m_createButton;
    NoticeLine *m_notice;
    QPointer<PaletteDetail> m_detail;
    QPointer<TextPromptDialog> m_prompt;
};
