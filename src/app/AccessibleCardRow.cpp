#include "AccessibleCardRow.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QWidget>

AccessibleCardRow::AccessibleCardRow(QWidget *widget, QAccessible::Role role, const char *pressSignal,
                                     Describe describe)
    : QAccessibleWidget(widget, role)
    , m_pressSignal(pressSignal)
    , m_describe(std::move(describe))
{
}

QString AccessibleCardRow::text(QAccessible::Text t) const
{
    QString text = QAccessibleWidget::text(t);
    if (t == QAccessible::Description && text.isEmpty() && m_describe)
        text = m_describe();
    return text;
}

QStringList AccessibleCardRow::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (!widget()->isEnabled())
        return names;
    if (!m_pressSignal.isEmpty())
        names.prepend(pressAction());
    names.append(showMenuAction());
    return names;
}

void AccessibleCardRow::doAction(const QString &actionName)
{
    QWidget *row = widget();
    if (actionName == pressAction() && !m_pressSignal.isEmpty()) {
        QMetaObject::invokeMethod(row, m_pressSignal.constData(), Qt::QueuedConnection);
        return;
    }
    if (actionName == showMenuAction()) {
        // The same menu Shift+F10 opens, at the card's centre.
        const QPoint centre = row->rect().center();
        QContextMenuEvent event(QContextMenuEvent::Keyboard, centre, row->mapToGlobal(centre));
        QApplication::sendEvent(row, &event);
        return;
    }
    QAccessibleWidget::doAction(actionName);
}
