#include "ColorItem.h"

#include "JsonWriter.h"
#include "RecordFields.h"

using namespace Qt::Literals::StringLiterals;

ColorItem ColorItem::create(const QString &name, double red, double green, double blue, double alpha)
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
    return a.id == b.id && a.name == b.name && a.red == b.red && a.green == b.green && a.blue == b.blue
        && a.alpha == b.alpha && a.dateAdded == b.dateAdded;
}

ColorItem ColorItem::fromJson(const QJsonObject &json)
{
    // In field order, so that a record with several faults always reports
    // the same one.
    using namespace RecordFields;
    ColorItem item;
    item.id = uuid(json, "id"_L1);
    item.name = string(json, "name"_L1);
    item.red = number(json, "red"_L1);
    item.green = number(json, "green"_L1);
    item.blue = number(json, "blue"_L1);
    item.alpha = number(json, "alpha"_L1);
    item.dateAdded = date(json, "dateAdded"_L1);
    return item;
}

void ColorItem::write(JsonWriter &writer) const
{
    writer.beginObject();
    writer.key("id"_L1);
    writer.value(id);
    writer.key("name"_L1);
    writer.value(name);
    writer.key("red"_L1);
    writer.value(red);
    writer.key("green"_L1);
    writer.value(green);
    writer.key("blue"_L1);
    writer.value(blue);
    writer.key("alpha"_L1);
    writer.value(alpha);
    writer.key("dateAdded"_L1);
    writer.value(dateAdded);
    writer.endObject();
}

QColor toQColor(const ColorItem &item)
{
    // Stored components are unclamped; QColor takes only what a screen shows.
    return QColor::fromRgbF(float(qBound(0.0, item.red, 1.0)), float(qBound(0.0, item.green, 1.0)),
                            float(qBound(0.0, item.blue, 1.0)), float(qBound(0.0, item.alpha, 1.0)));
}
