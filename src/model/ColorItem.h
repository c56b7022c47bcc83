#pragma once

#include "model/ColorFormats.h"

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QUuid>

// One remembered color: sRGB components as sampled, never rounded.
struct ColorItem
{
    QUuid id;
    QString name;
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    double alpha = 1.0;
    QDateTime dateAdded;

    // A fresh entry: new random id, dateAdded now. Components are taken as
    // given (sRGB, unclamped, full double precision).
    static ColorItem create(const QString &name, double red, double green, double blue, double alpha = 1.0);

    // A copy under another name that keeps id, components and date.
    ColorItem renamed(const QString &newName) const;
    RgbColor rgb() const { return {red, green, blue}; }

    // The record in the files: keys "id", "name", "red", "green", "blue",
    // "alpha", "dateAdded". fromJson() throws RecordError.
    static ColorItem fromJson(const QJsonObject &json);
    QJsonObject toJson() const;

    friend bool operator==(const ColorItem &a, const ColorItem &b);
    friend bool operator!=(const ColorItem &a, const ColorItem &b) { return !(a == b); }
};
