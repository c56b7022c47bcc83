#pragma once

#include <QColor>
#include <QDateTime>
#include <QString>
#include <QUuid>

class JsonWriter;
class QJsonObject;

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

    // The record in the files: keys "id", "name", "red", "green", "blue",
    // "alpha", "dateAdded", in that order. fromJson() throws RecordError.
    static ColorItem fromJson(const QJsonObject &json);
    void write(JsonWriter &writer) const;

    friend bool operator==(const ColorItem &a, const ColorItem &b);
    friend bool operator!=(const ColorItem &a, const ColorItem &b) { return !(a == b); }
};

// The color as a screen shows it: components clamped to 0..1, alpha as opacity.
QColor toQColor(const ColorItem &item);
