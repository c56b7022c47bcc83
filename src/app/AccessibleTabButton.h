#pragma once

#include <QAccessibleWidget>

class TabButton;

// What assistive technology sees of a tab-bar button: a page tab that is
// selected or not, pressed to show its tab. As a plain checkable button it
// would be announced as a check box, and the toggle action a screen reader
// offers would flip its check mark without switching the tab.
class AccessibleTabButton : public QAccessibleWidget
{
public:
    explicit AccessibleTabButton(TabButton *button);

    // Makes Qt use this for every TabButton; once is enough, more is harmless.
    static void install();

    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString &actionName) override;
};
