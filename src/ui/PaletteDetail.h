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
// that it has none. Follows the store while it is open.
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

private:
    void refresh();

    PaletteStorage &m_paletteStorage;
    QUuid m_paletteId;
    StyledButton *m_backButton;
    ElidedLabel *m_name;
    StyledListView *m_list;
    EmptyState *m_emptyState;
};
