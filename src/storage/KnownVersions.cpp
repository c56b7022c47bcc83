#include "KnownVersions.h"

#include <QDir>
#include <QFile>

#include <algorithm>

KnownVersions::KnownVersions(const QString &stateFolder, const QString &name)
    : m_folder(stateFolder)
    , m_name(name)
{
    const QString prefix = name + u'-';
    for (const QString &file : QDir(m_folder).entryList(QDir::Files)) {
        bool number = false;
        const qint64 n = file.startsWith(prefix) && file.endsWith(u".json")
            ? QStringView(file).sliced(prefix.size()).chopped(5).toLongLong(&number)
            : 0;
        if (number)
            m_numbers.append(n);
    }
    std::sort(m_numbers.begin(), m_numbers.end());
}

QString KnownVersions::fileOf(qint64 number) const
{
    return m_folder + u'/' + m_name + u'-' + QString::number(number) + QStringLiteral(".json");
}

QByteArray KnownVersions::newest() const
{
    if (m_newest.isNull() && !m_numbers.isEmpty()) {
        QFile newest(fileOf(m_numbers.last()));
        if (newest.open(QIODevice::ReadOnly))
            m_newest = newest.readAll();
    }
    return m_newest;
}

void KnownVersions::add(const QByteArray &bytes)
{
    if (!m_numbers.isEmpty() && bytes == newest())
        return;
    // Each under a name of its own, and never synced to the disk: a version
    // cut short by a crash is one that cannot be read, and is left out.
    QDir().mkpath(m_folder);
    const qint64 number = m_numbers.isEmpty() ? 1 : m_numbers.last() + 1;
    QFile file(fileOf(number));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        return;
    m_numbers.append(number);
    m_newest = bytes;
    while (m_numbers.size() > kept)
        QFile::remove(fileOf(m_numbers.takeFirst()));
}

void KnownVersions::clear()
{
    for (const qint64 number : std::as_const(m_numbers))
        QFile::remove(fileOf(number));
    m_numbers.clear();
    m_newest.clear();
}

QList<QByteArray> KnownVersions::all() const
{
    QList<QByteArray> versions;
    for (auto n = m_numbers.crbegin(); n != m_numbers.crend(); ++n) {
        QFile file(fileOf(*n));
        if (file.open(QIODevice::ReadOnly))
            versions.append(file.readAll());
    }
    return versions;
}
