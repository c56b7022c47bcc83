#include "AccessibleTabButton.h"

#include "ui/TabButton.h"

AccessibleTabButton::AccessibleTabButton(TabButton *button)
    : QAccessibleWidget(button, QAccessible::PageTab)
{
    // Selection is shown by the checked state; tell listeners when it moves.
    QObject::connect(button, &QAbstractButton::toggled, button, [button] {
        QAccessible::State changed;
        changed.selected = true;
        changed.checked = true;
        QAccessibleStateChangeEvent event(button, changed);
        QAccessible::updateAccessibility(&event);
    });
}

TabButton *AccessibleTabButton::button() const
{
    return static_cast<TabButton *>(widget());
}

QAccessible::State AccessibleTabButton::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.selectable = true;
    state.selected = button()->isSelected();
    state.checkable = false;
    state.checked = false;
    return state;
}

QStringList AccessibleTabButton::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (widget()->isEnabled())
        names.prepend(pressAction());
    return names;
}

void AccessibleTabButton::doAction(const QString &actionName)
{
    if (actionName == pressAction() && widget()->isEnabled()) {
        button()->click();
        return;
    }
    QAccessibleWidget::doAction(actionName);
}
