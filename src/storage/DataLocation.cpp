#include "DataLocation.h"

#include <QDir>
#include <QStandardPaths>

namespace DataLocation {

QString defaultFolder()
{
    QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (base.isEmpty())
        base = QDir::homePath() + QStringLiteral("/.local/share");
    return base + QStringLiteral("/Tintwright");
}

} // namespace DataLocation
