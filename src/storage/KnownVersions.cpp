#include "KnownVersions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

// By origin: "palettes-12-read.json".
const QString suffixes[] = {QStringLiteral("-read.json"), QStringLiteral("-changed.json"),
                            QStringLiteral("-merged.json")};

} // namespace

KnownVersions::KnownVersions(const QString &stateFolder, const QString &name)
    : m_folder(stateFolder)
    , m_name(name)
{
    const QString prefix = name + u'-';
    for (const QString &file : QDir(m_folder).entryList(QDir::Files)) {
        for (int origin = 0; origin < 3; ++origin) {
            const QString &suffix = suffixes[origin];
            bool number = false;
            const qint64 n = file.startsWith(prefix) && file.endsWith(suffix)
                ? QStringView(file).sliced(prefix.size()).chopped(suffix.size()).toLongLong(&number)
                : 0;
            if (number)
                m_entries.append({n, Origin(origin)});
        }
    }
    std::sort(m_entries.begin(), m_entries.end(),
              [](const Entry &a, const Entry &b) { return a.number < b.number; });
}

QString KnownVersions::fileOf(const Entry &entry) const
{
    return m_folder + u'/' + m_name + u'-' + QString::number(entry.number) + suffixes[int(entry.origin)];
}

QByteArray KnownVersions::newest() const
{
    if (m_newest.isNull() && !m_entries.isEmpty()) {
        QFile newest(fileOf(m_entries.last()));
        if (newest.open(QIODevice::ReadOnly))
            m_newest = newest.readAll();
    }
    return m_newest;
}

void KnownVersions::add(const QByteArray &bytes, Origin origin)
{
    if (!m_entries.isEmpty() && bytes == newest())
        return;
    // Each under a name of its own, and never synced to the disk: a version
    // cut short by a crash is one that cannot be read, and is left out.
    QDir().mkpath(m_folder);
    const Entry entry{m_entries.isEmpty() ? 1 : m_entries.last().number + 1, origin};
    QFile file(fileOf(entry));
    // The file's own time is when the version became known here.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        return;
    m_entries.append(entry);
    m_newest = bytes;
    while (m_entries.size() > kept)
        QFile::remove(fileOf(m_entries.takeFirst()));
}

void KnownVersions::clear()
{
    for (const Entry &entry : std::as_const(m_entries))
        QFile::remove(fileOf(entry));
    m_entries.clear();
    m_newest.clear();
}

QList<KnownVersions::Version> KnownVersions::all() const
{
    QList<Version> versions;
    for (auto entry = m_entries.crbegin(); entry != m_entries.crend(); ++entry) {
        QFile file(fileOf(*entry));
        if (file.open(QIODevice::ReadOnly))
            versions.append({file.readAll(), entry->origin, QFileInfo(file).lastModified()});
    }
    return versions;
}

bool KnownVersions::wrote(const QByteArray &bytes) const
{
    return holds(bytes, false);
}

bool KnownVersions::read(const QByteArray &bytes) const
{
    return holds(bytes, true);
}

bool KnownVersions::holds(const QByteArray &bytes, bool read) const
{
    for (const Entry &entry : m_entries) {
        QFile file(fileOf(entry));
        if ((entry.origin == Origin::Read) == read && file.size() == bytes.size()
            && file.open(QIODevice::ReadOnly) && file.readAll() == bytes)
            return true;
    }
    return false;
}
