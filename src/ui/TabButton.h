#pragma once

#include "MenuTab.h"

#include <QAbstractButton>

// One icon-only button of the tab bar. It shows whether its tab is the
// selected one; choosing the tab is left to the owner (clicked).
class TabButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit TabButton(MenuTab tab, QWidget *parent = nullptr);

    MenuTab tab() const { return m_tab; }
    bool isSelected() const { return isChecked(); }
    void setSelected(bool selected);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    // Clicking never unselects: the owner decides.
    void nextCheckState() override {}

private:
    MenuTab m_tab;
    bool m_hovered = false;
    bool m_focusRing = false;
};
