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

    // The record in the files: keys "id", "name", "colors" (an array of
    // color records), "dateCreated". fromJson() throws RecordError.
    static Palette fromJson(const QJsonObject &json);
    QJsonObject toJson() const;

    friend bool operator==(const Palette &a, const Palette &b);
    friend bool operator!=(const Palette &a, const Palette &b) { return !(a == b); }
};
