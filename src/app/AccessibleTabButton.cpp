#include "AccessibleTabButton.h"

#include "ui/TabButton.h"

#include <utility>

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

void AccessibleTabButton::install()
{
    static bool installed = false;
    if (std::exchange(installed, true))
        return;
    QAccessible::installFactory([](const QString &, QObject *object) -> QAccessibleInterface * {
        auto *button = qobject_cast<TabButton *>(object);
        return button ? new AccessibleTabButton(button) : nullptr;
    });
}

QAccessible::State AccessibleTabButton::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.selectable = true;
    state.selected = static_cast<TabButton *>(widget())->isChecked();
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
    if (actionName == pressAction() && widget()->isEnabled())
        static_cast<TabButton *>(widget())->click();
    else
        QAccessibleWidget::doAction(actionName);
}
