#pragma once

#include <QUuid>
#include <QWidget>

class ColorListModel;
class ElidedLabel;
class EmptyState;
class PaletteFiles;
class PaletteStorage;
class QPushButton;
class StyledListView;

// An open palette: "Back" (Alt+Left), its name, and its colors, or a note
// that it has none. Follows the store while it is open. A color's menu
// copies or deletes it; the palette's own menu (export, copy as CSS) opens
// on its header and background, or with Shift+F10 and the Menu key where no
// color row takes them.
class PaletteDetail : public QWidget
{
    Q_OBJECT

public:
    PaletteDetail(PaletteStorage &paletteStorage, const QUuid &paletteId, PaletteFiles &paletteFiles,
                  QWidget *parent = nullptr);

    QUuid paletteId() const { return m_paletteId; }
    QPushButton *backButton() const { return m_backButton; }
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
    void showColorMenu(const QModelIndex &row, const QPoint &globalPos);

    PaletteStorage &m_paletteStorage;
    PaletteFiles &m_paletteFiles;
    QUuid m_paletteId;
    ColorListModel *m_model;
    QPushButton *m_backButton;
    ElidedLabel *m_name;
    StyledListView *m_list;
    EmptyState *m_emptyState;
};
