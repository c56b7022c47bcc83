#include "RecordFile.h"

#include "storage/ConsoleReport.h"

#include "model/JsonWriter.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

#include <cerrno>
#include <cstring>

RecordFile::RecordFile(const QString &folder, const QString &name)
    : m_name(name)
    , m_path(folder + u'/' + name + QStringLiteral(".json"))
{
    // A failure is left for the first read or write to report.
    QDir().mkpath(folder);
}

std::optional<QByteArray> RecordFile::read(QString &error) const
{
    const QFileInfo info(m_path);
    if (!info.exists() && !info.isSymLink())
        return std::nullopt;
    if (info.isDir()) {
        error = QStringLiteral("%1 is a folder, not a file").arg(m_path);
        return std::nullopt;
    }
    // A fifo would block the start for good and a device like /dev/zero
    // would be read without end; only regular files are data files.
    if (info.exists() && !info.isFile()) {
        error = QStringLiteral("%1 is not a regular file").arg(m_path);
        return std::nullopt;
    }
    QFile file(m_path);
    QByteArray data;
    if (file.open(QIODevice::ReadOnly))
        data = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        error = QStringLiteral("%1: %2").arg(m_path, file.errorString());
        return std::nullopt;
    }
    return data;
}

void RecordFile::refuse(const QString &error)
{
    printReportLine(QStringLiteral("Failed to load %1: %2").arg(m_name, error));

    const QString stamp = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
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

void RecordFile::save(const std::function<void(JsonWriter &)> &writeRecords)
{
    const QString error = write(writeRecords);
    if (!error.isEmpty())
        printReportLine(QStringLiteral("Failed to save %1: %2").arg(m_name, error));
}

QString RecordFile::write(const std::function<void(JsonWriter &)> &writeRecords)
{
    if (m_writesRefused)
        return QStringLiteral("%1 could not be read or kept aside, so it is not overwritten").arg(m_path);
    // Unbuffered: the writer hands over its own chunks as they fill, and
    // the file is never held in memory whole.
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return QStringLiteral("%1: %2").arg(m_path, file.errorString());
    errno = 0;
    JsonWriter writer(file);
    writeRecords(writer);
    // Every chunk is checked: on a full disk (or over a file size limit) a
    // write can come up short without an error on the file, and
    // QSaveFile::commit() would still rename the truncated file into place.
    if (!writer.flush()) {
        const int writeErrno = errno;
        const QString why =
            writeErrno != 0 ? QString::fromLocal8Bit(std::strerror(writeErrno)) : file.errorString();
        file.cancelWriting();
        return QStringLiteral("%1: %2").arg(m_path, why);
    }
    if (!writer.error().isEmpty()) {
        file.cancelWriting();
        return writer.error();
    }
    // commit() syncs the file to the disk before renaming it into place.
    if (!file.commit())
        return QStringLiteral("%1: %2").arg(m_path, file.errorString());
    return {};
}

void RecordFile::removeStrayTemporaryFiles() const
{
    // A save killed between writing its temporary file and renaming it
    // leaves that file behind, named as QSaveFile names it: the file's name,
    // a dot and six random ASCII letters of both cases. A suffix all in one
    // case ("backup") may be the user's own file and is left alone, as is
    // the odd stray file whose letters happen to share a case.
    const QFileInfo info(m_path);
    const QString prefix = info.fileName() + u'.';
    const QStringList names = info.dir().entryList({prefix + QStringLiteral("??????")},
                                                   QDir::Files | QDir::NoSymLinks | QDir::CaseSensitive);
    static const QRegularExpression mixedCase(QStringLiteral("^(?=.*[a-z])(?=.*[A-Z])[A-Za-z]{6}$"));
    for (const QString &name : names) {
        if (name.startsWith(prefix) && mixedCase.match(name.sliced(prefix.size())).hasMatch())
            QFile::remove(info.dir().filePath(name));
    }
}
