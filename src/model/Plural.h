#pragma once

#include <QString>

// A count with the word that goes with it: "1 color", "2 colors".
inline QString countOf(qsizetype count, QLatin1StringView one, QLatin1StringView many)
{
    return QString::number(count) + u' ' + (count == 1 ? one : many);
}
