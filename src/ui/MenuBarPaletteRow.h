#pragma once

#include "model/Palette.h"

#include <QPixmap>
#include <QWidget>

class PaletteStorage;

// One palette in the Palettes list: a card with the name, the number of
// colors, a chevron and a strip of all its colors. Click, Return or Space
// opens it; its context menu deletes it at once.
class MenuBarPaletteRow : public QWidget
{
    Q_OBJECT

public:
    MenuBarPaletteRow(const Palette &palette, PaletteStorage &paletteStorage, QWidget *parent = nullptr);

    QUuid paletteId() const { return m_palette.id; }
    QString name() const { return m_palette.name; }
    // The number of colors as the card shows it.
    QString countText() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void tapped();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    void paintStrip(QPainter &painter, const QRectF &rect) const;
    void showContextMenu(const QPoint &globalPos);

    Palette m_palette; // what the card draws; rebuilt from the store on change
    PaletteStorage &m_paletteStorage;
    QPixmap m_chevron; // at the current device pixel ratio
    bool m_pressed = false;
    bool m_hovered = false;
};
