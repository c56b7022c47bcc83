#include "Palette.h"

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
    return a.id == b.id && a.name == b.name && a.colors == b.colors
        && a.dateCreated == b.dateCreated;
}
