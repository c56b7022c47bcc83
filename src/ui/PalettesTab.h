#pragma once

#include <QPointer>
#include <QUuid>
#include <QWidget>

#include <optional>

class EmptyState;
class IconButton;
class ListActions;
class NoticeLine;
class PaletteDetail;
class PaletteListModel;
class PaletteStorage;
class StyledButton;
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
    PalettesTab(PaletteStorage &paletteStorage, ListActions &listActions, QWidget *parent = nullptr);

    // The open palette's id; none while the list shows.
    std::optional<QUuid> selectedPaletteId() const;
    void openPalette(const QUuid &id);
    void showList();
    // The "New Palette" prompt, as "+" and "Create Palette" open it.
    void showNewPalettePrompt();
    // The open dialog of "Import Palette…"; imports the files chosen.
    void showImportDialog();
    // Each file becomes a new palette at the end of the list, which then
    // shows with the last one in view. A file that cannot be imported
    // changes nothing and says why in the notice line.
    void importFiles(const QStringList &paths);

    TextPromptDialog *newPalettePrompt() const;
    StyledListView *list() const { return m_list; }
    PaletteDetail *detail() const;
    NoticeLine *notice() const { return m_notice; }

private:
    void refresh();

    PaletteStorage &m_paletteStorage;
    ListActions &m_listActions;
    QWidget *m_listPage;
    PaletteListModel *m_model;
    StyledListView *m_list;
    EmptyState *m_emptyState;
    StyledButton *m_createButton;
    NoticeLine *m_notice;
    QPointer<PaletteDetail> m_detail;
    QPointer<TextPromptDialog> m_prompt;
};
