#pragma once

#include "model/ColorItem.h"

#include <QWidget>

class PaletteStorage;

// One color of an open palette: a swatch, the color's name over its hex
// text. Its context menu copies the hex text or removes the color from the
// palette at once; Ctrl+C copies too.
class PaletteColorRow : public QWidget
{
    Q_OBJECT

public:
    PaletteColorRow(const ColorItem &color, const QUuid &paletteId, PaletteStorage &paletteStorage,
                    QWidget *parent = nullptr);

    QUuid colorId() const { return m_color.id; }
    QString hexText() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    void showContextMenu(const QPoint &globalPos);

    ColorItem m_color; // what the row draws; rebuilt from the store on change
    QUuid m_paletteId;
    PaletteStorage &m_paletteStorage;
    bool m_hovered = false;
};
