#pragma once

#include <QUuid>
#include <QWidget>

class ElidedLabel;
class EmptyState;
class ListActions;
class PaletteStorage;
class StyledButton;
class StyledListView;

// An open palette: "Back" (Alt+Left), its name, and its colors, or a note
// that it has none. Follows the store while it is open. The palette's own
// menu (export, copy as CSS) opens on its header and background, or with
// Shift+F10 and the Menu key where no color row takes them.
class PaletteDetail : public QWidget
{
    Q_OBJECT

public:
    PaletteDetail(PaletteStorage &paletteStorage, const QUuid &paletteId, ListActions &listActions,
                  QWidget *parent = nullptr);

    QUuid paletteId() const { return m_paletteId; }
    StyledButton *backButton() const { return m_backButton; }
    StyledListView *list() const { return m_list; }

signals:
    void backRequested();

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void refresh();
    QPoint underHeader() const;
    void showPaletteMenu(const QPoint &globalPos);

    PaletteStorage &m_paletteStorage;
    ListActions &m_listActions;
    QUuid m_paletteId;
    StyledButton *m_backButton;
    ElidedLabel *m_name;
    StyledListView *m_list;
    EmptyState *m_emptyState;
};
