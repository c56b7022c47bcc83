#pragma once

#include "model/ColorItem.h"

#include <QWidget>

#include <array>

class QLabel;
class QPushButton;

// One color in four notations (HEX, RGB, HSL, OKLCH), a row each on a
// rounded translucent card: the text, selectable, and a button that copies
// exactly that text. The button shows a checkmark for one second after a
// copy; a second copy within that second does not extend it. Showing
// another color starts every row afresh.
class ColorDisplayView : public QWidget
{
    Q_OBJECT

public:
    explicit ColorDisplayView(QWidget *parent = nullptr);

    void setColorItem(const ColorItem &colorItem);

    static constexpr int rowCount = 4;
    QString value(int row) const;
    bool isCopied(int row) const;
    QPushButton *copyButton(int row) const { return m_rows[row].copyButton; }
    // The copy button's action.
    void copy(int row);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    struct Row
    {
        QString label;
        QLabel *value = nullptr;
        QPushButton *copyButton = nullptr;
        bool copied = false;
        int shown = 0; // which color the row shows; a late reset of an earlier one is ignored
    };
    void setCopied(Row &row, bool copied);

    std::array<Row, rowCount> m_rows;
};
