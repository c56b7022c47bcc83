#include "Palette.h"

#include "JsonWriter.h"
#include "RecordFields.h"

using namespace Qt::Literals::StringLiterals;

Palette Palette::create(const QString &name)
{
    Palette palette;
    palette.id = QUuid::createUuid();
    palette.name = name;
    palette.dateCreated = QDateTime::currentDateTimeUtc();
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

void Palette::write(JsonWriter &writer) const
{
    writer.beginObject();
    writer.key("id"_L1);
    writer.value(id);
    writer.key("name"_L1);
    writer.value(name);
    writer.key("colors"_L1);
    writer.beginArray();
    for (const ColorItem &item : colors)
        item.write(writer);
    writer.endArray();
    writer.key("dateCreated"_L1);
    writer.value(dateCreated);
    writer.endObject();
}
