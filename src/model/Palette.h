#pragma once

#include "ColorItem.h"

#include <QList>

// A named, ordered list of colors, held by value.
struct Palette
{
    QUuid id;
    QString name;
    QList<ColorItem> colors;
    QDateTime dateCreated;

    // A fresh, empty palette: new random id, dateCreated now.
    static Palette create(const QString &name);

    friend bool operator==(const Palette &a, const Palette &b);
    friend bool operator!=(const Palette &a, const Palette &b) { return !(a == b); }
};
