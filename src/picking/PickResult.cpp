#include "PickResult.h"

#include <QDataStream>

// Static, and outside any namespace, so that QList's streaming finds them.
static QDataStream &operator<<(QDataStream &stream, const ColorItem &item)
{
    return stream << item.id << item.name << item.red << item.green << item.blue << item.alpha
                  << item.dateAdded;
}

static QDataStream &operator>>(QDataStream &stream, ColorItem &item)
{
    return stream >> item.id >> item.name >> item.red >> item.green >> item.blue >> item.alpha
        >> item.dateAdded;
}

QDataStream &operator<<(QDataStream &stream, const PickResult &result)
{
    return stream << result.outcome << result.colors << result.reason;
}

QDataStream &operator>>(QDataStream &stream, PickResult &result)
{
    return stream >> result.outcome >> result.colors >> result.reason;
}
