#pragma once

#include <QAccessibleWidget>

#include <functional>

// What assistive technology sees of a focusable card drawn by hand (a
// palette in the Palettes list, a color in an open palette). Such a widget
// is a plain QWidget to Qt, announced as a nameless "filler" with nothing
// to press; this gives it a role, a description and its actions.
class AccessibleCardRow : public QAccessibleWidget
{
public:
    using Describe = std::function<QString()>;

    // pressSignal: the widget's signal that the press action emits (empty
    // for rows that only have a context menu). describe: what is spoken
    // after the name, read each time (the card may have changed).
    AccessibleCardRow(QWidget *widget, QAccessible::Role role, const char *pressSignal, Describe describe);

    QString text(QAccessible::Text t) const override;
    QStringList actionNames() const override;
    void doAction(const QString &actionName) override;

private:
    QByteArray m_pressSignal;
    Describe m_describe;
};
