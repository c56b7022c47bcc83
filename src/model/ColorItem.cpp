#include "ColorItem.h"

ColorItem ColorItem::create(const QString &name, double red, double green, double blue,
                            double alpha)
{
    ColorItem item;
    item.id = QUuid::createUuid();
    item.name = name;
    item.red = red;
    item.green = green;
    item.blue = blue;
    item.alpha = alpha;
    item.dateAdded = QDateTime::currentDateTimeUtc();
    return item;
}

ColorItem ColorItem::renamed(const QString &newName) const
{
    ColorItem copy = *this;
    copy.name = newName;
    return copy;
}

bool operator==(const ColorItem &a, const ColorItem &b)
{
    return a.id == b.id && a.name == b.name && a.red == b.red && a.green == b.green
        && a.blue == b.blue && a.alpha == b.alpha && a.dateAdded == b.dateAdded;
}

QColor toQColor(const ColorItem &item)
{
    // Stored components are unclamped; QColor takes only what a screen shows.
    return QColor::fromRgbF(float(qBound(0.0, item.red, 1.0)), float(qBound(0.0, item.green, 1.0)),
                            float(qBound(0.0, item.blue, 1.0)), float(qBound(0.0, item.alpha, 1.0)));
}
