#pragma once

#include "DrawnControl.h"
#include "MenuTab.h"

// One icon-only button of the tab bar. It shows whether its tab is the
// selected one (checked); choosing the tab is left to the owner (clicked).
class TabButton : public DrawnControl<QAbstractButton>
{
    Q_OBJECT

public:
    explicit TabButton(MenuTab tab, QWidget *parent = nullptr);

    MenuTab tab() const { return m_tab; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    // Clicking never unselects: the owner decides.
    void nextCheckState() override { }

private:
    MenuTab m_tab;
};
