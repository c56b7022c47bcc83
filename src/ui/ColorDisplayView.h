#pragma once

#include "model/ColorItem.h"

#include <QList>
#include <QWidget>

class FormatRow;
class QVBoxLayout;

// One color in four notations (HEX, RGB, HSL, OKLCH), a row each, on a
// rounded translucent card. The texts are made from the color each time it
// is set; the rows are rebuilt then, so their copy marks start fresh.
class ColorDisplayView : public QWidget
{
    Q_OBJECT

public:
    explicit ColorDisplayView(const ColorItem &colorItem, QWidget *parent = nullptr);

    ColorItem colorItem() const { return m_colorItem; }
    void setColorItem(const ColorItem &colorItem);
    QList<FormatRow *> rows() const { return m_rows; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void rebuild();

    ColorItem m_colorItem;
    QList<FormatRow *> m_rows;
    QVBoxLayout *m_layout;
};
