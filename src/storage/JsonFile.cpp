#include "JsonFile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <cstring>

JsonFile::JsonFile(const QString &path)
    : m_path(path)
{
}

JsonFile::ReadResult JsonFile::read() const
{
    const QFileInfo info(m_path);
    if (!info.exists() && !info.isSymLink())
        return {ReadStatus::Missing, {}, {}};
    if (info.isDir())
        return {ReadStatus::Failed, {}, QStringLiteral("%1 is a folder, not a file").arg(m_path)};
    // A fifo would block the start for good and a device like /dev/zero
    // would be read without end; only regular files are data files.
    if (info.exists() && !info.isFile())
        return {ReadStatus::Failed, {}, QStringLiteral("%1 is not a regular file").arg(m_path)};
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return {ReadStatus::Failed, {}, QStringLiteral("%1: %2").arg(m_path, file.errorString())};
    QByteArray data = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return {ReadStatus::Failed, {}, QStringLiteral("%1: %2").arg(m_path, file.errorString())};
    return {ReadStatus::Read, std::move(data), {}};
}

void JsonFile::keepUnusableFile()
{
    const QString stamp =
        QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
    QString aside = m_path + QStringLiteral(".corrupt-") + stamp;
    for (int n = 2; QFileInfo::exists(aside) || QFileInfo(aside).isSymLink(); ++n)
        aside = m_path + QStringLiteral(".corrupt-") + stamp + QStringLiteral("-%1").arg(n);

    // Only a regular file is copied; anything else (a folder, a fifo, a
    // device, a broken link) is moved aside as it is.
    if (QFileInfo(m_path).isFile() && QFile::copy(m_path, aside))
        return;
    // Unreadable files cannot be copied, but they can still be moved aside.
    if (QFile::rename(m_path, aside))
        return;
    m_writesRefused = true;
}

QString JsonFile::write(const QByteArray &data)
{
    if (m_writesRefused)
        return QStringLiteral("%1 could not be read or kept aside, so it is not overwritten")
            .arg(m_path);
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return QStringLiteral("%1: %2").arg(m_path, file.errorString());
    // Flushed and checked here: on a full disk (or over a file size limit)
    // the buffered bytes only fail on flush, and QSaveFile::commit() after
    // such a short write still renames the truncated file into place.
    errno = 0;
    if (file.write(data) != data.size() || !file.flush()) {
        const int writeErrno = errno;
        QString error = file.errorString();
        if (writeErrno != 0)
            error = QString::fromLocal8Bit(std::strerror(writeErrno));
        file.cancelWriting();
        return QStringLiteral("%1: %2").arg(m_path, error);
    }
    if (!file.commit())
        return QStringLiteral("%1: %2").arg(m_path, file.errorString());
    return {};
}
