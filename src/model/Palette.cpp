#include "Palette.h"

#include "RecordFields.h"

using namespace Qt::Literals::StringLiterals;

Palette Palette::create(const QString &name)
{
    Palette palette;
    palette.id = QUuid::createUuid();
    palette.name = name;
    palette.dateCreated = RecordFields::now();
    return palette;
}

bool operator==(const Palette &a, const Palette &b)
{
    return a.id == b.id && a.name == b.name && a.colors == b.colors && a.dateCreated == b.dateCreated;
}

Palette Palette::fromJson(const QJsonObject &json)
{
    using namespace RecordFields;
    Palette palette;
    palette.id = uuid(json, "id"_L1);
    palette.name = string(json, "name"_L1);
    palette.colors = list<ColorItem>(array(json, "colors"_L1), "colors"_L1);
    palette.dateCreated = date(json, "dateCreated"_L1);
    return palette;
}

QJsonObject Palette::toJson() const
{
    QJsonArray colorRecords;
    for (const ColorItem &item : colors)
        colorRecords.append(item.toJson());
    return {{"id"_L1, RecordFields::uuidText(id)},
            {"name"_L1, name},
            {"colors"_L1, colorRecords},
            {"dateCreated"_L1, RecordFields::dateText(dateCreated)}};
}
