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

QJsonObject ColorItem::toJson() const
{
    return {{"id"_L1, RecordFields::uuidText(id)},
            {"name"_L1, name},
            {"red"_L1, red},
            {"green"_L1, green},
            {"blue"_L1, blue},
            {"alpha"_L1, alpha},
            {"dateAdded"_L1, RecordFields::dateText(dateAdded)}};
}
