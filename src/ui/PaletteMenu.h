#pragma once

#include <QComboBox>

// The add-color sheet's menu of palettes, drawn like the window's text
// fields: a translucent rounded field, the choice elided to the width, and
// an up-down chevron. The list that opens is the standard one, dark.
class PaletteMenu : public QComboBox
{
    Q_OBJECT

public:
    explicit PaletteMenu(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    bool m_focusRing = false;
};
