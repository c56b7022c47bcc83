#pragma once

#include "model/ColorItem.h"

#include <QList>
#include <QMetaType>
#include <QString>

class QDataStream;

// How a pick ended: with the colors picked, cancelled by the user, or
// unavailable because nothing here can read the screen (and why). Every
// reader of a pick (the history, the window, the command line, the global
// shortcut) reads this one value.
struct PickResult
{
    enum class Outcome : quint8 { Picked, Cancelled, Unavailable };

    Outcome outcome = Outcome::Cancelled;
    QList<ColorItem> colors; // when picked: each color, in the order picked
    QString reason;          // when unavailable; when cancelled, what ended it if not the user

    bool isPicked() const { return outcome == Outcome::Picked; }
};

// As it travels from a running instance to a command.
QDataStream &operator<<(QDataStream &stream, const PickResult &result);
QDataStream &operator>>(QDataStream &stream, PickResult &result);

Q_DECLARE_METATYPE(PickResult)
