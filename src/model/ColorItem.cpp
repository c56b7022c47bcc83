#include "ColorItem.h"

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
    item.dateAdded = RecordFields::now();
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

QJsonObject ColorItem::toJson() const
{
    // The keys made once, and inserted in the order a QJsonObject keeps
    // them (sorted), each at its end: a library writes thousands of these.
    static const QString keys[] = {u"alpha"_s, u"blue"_s, u"dateAdded"_s, u"green"_s,
                                   u"id"_s,    u"name"_s, u"red"_s};
    QJsonObject json;
    json.insert(keys[0], alpha);
    json.insert(keys[1], blue);
    json.insert(keys[2], RecordFields::dateText(dateAdded));
    json.insert(keys[3], green);
    json.insert(keys[4], RecordFields::uuidText(id));
    json.insert(keys[5], name);
    json.insert(keys[6], red);
    return json;
}
