#include "DataLocation.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace DataLocation {

QString defaultFolder()
{
    QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (base.isEmpty())
        base = QDir::homePath() + QStringLiteral("/.local/share");
    return base + QStringLiteral("/Tintwright");
}

QString resolvedFolder(const QString &folder)
{
    QString existing = QDir::isAbsolutePath(folder) ? folder : QDir::currentPath() + u'/' + folder;
    QString rest;
    for (;;) {
        const QString canonical = QFileInfo(existing).canonicalFilePath();
        const qsizetype slash = existing.lastIndexOf(u'/');
        if (!canonical.isEmpty() || slash <= 0)
            return QDir::cleanPath((canonical.isEmpty() ? existing : canonical) + rest);
        rest.prepend(existing.sliced(slash));
        existing.truncate(slash);
    }
}

QString stateFolder(const QString &dataFolder)
{
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (state.isEmpty())
        state = QDir::homePath() + QStringLiteral("/.local/state");
    const QByteArray key = resolvedFolder(dataFolder).toUtf8();
    return state + QStringLiteral("/Tintwright/")
        + QString::fromLatin1(QCryptographicHash::hash(key, QCryptographicHash::Sha1).toHex().left(16));
}

} // namespace DataLocation
