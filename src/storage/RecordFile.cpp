#include "RecordFile.h"

#include "storage/ConsoleReport.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool isLinkLoop(const QString &path)
{
    struct stat status;
    return ::stat(QFile::encodeName(path).constData(), &status) != 0 && errno == ELOOP;
}

// The fingerprint of the file's bytes; nothing when it cannot be read.
std::optional<size_t> fingerprintOfFile(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    return qHashBits(bytes.constData(), size_t(bytes.size()));
}

} // namespace

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
    // A link to nothing is a file not made yet (a synced folder that has
    // not been filled); a loop of links is not.
    if (!info.exists() && !(info.isSymLink() && isLinkLoop(m_path)))
        return std::nullopt;
    return readWhole(m_path, error);
}

std::optional<QByteArray> RecordFile::readWhole(const QString &path, QString &error)
{
    const QFileInfo info(path);
    if (info.isDir()) {
        error = QStringLiteral("%1 is a folder, not a file").arg(path);
        return std::nullopt;
    }
    // A fifo would block the start for good and a device like /dev/zero
    // would be read without end; only regular files are data files.
    if (info.exists() && !info.isFile()) {
        error = QStringLiteral("%1 is not a regular file").arg(path);
        return std::nullopt;
    }
    QFile file(path);
    QByteArray data;
    if (file.open(QIODevice::ReadOnly))
        data = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    return data;
}

std::optional<QByteArray> RecordFile::readIfChanged(QString &error, Look look)
{
    if (!QFileInfo::exists(m_path)) {
        // Gone, perhaps for a moment: the records stay, and the next save
        // writes them again.
        m_known = {};
        return std::nullopt;
    }
    if (unchanged(look))
        return std::nullopt;
    std::optional<QByteArray> data = read(error);
    // Touched, or rewritten with the same bytes: nothing to take in.
    if (data && m_known.exists) {
        const size_t hash = fingerprintOf(*data);
        if (hash == m_known.hash) {
            remember(hash);
            return std::nullopt;
        }
    }
    return data;
}

bool RecordFile::unchanged(Look look) const
{
    const QFileInfo info(m_path);
    if (info.exists() != m_known.exists)
        return false;
    if (!info.exists())
        return true;
    // Size and time alone cannot tell: a rewrite within the same tick of
    // the file system's clock, or by a sync tool that keeps the sender's
    // time, can leave both as they were.
    return info.size() == m_known.size && info.lastModified() == m_known.modified
        && (look == Look::Quickly || fingerprintOfFile(m_path) == m_known.hash);
}

size_t RecordFile::fingerprintOf(const QByteArray &bytes)
{
    return qHashBits(bytes.constData(), size_t(bytes.size()));
}

void RecordFile::remember(size_t hash)
{
    // Taken after the bytes: a write in between shows as a changed hash
    // at the next look, never as an unchanged file.
    const QFileInfo info(m_path);
    m_known = {info.exists(), info.size(), info.lastModified(), hash};
}

void RecordFile::rememberAsItIs()
{
    const QFileInfo info(m_path);
    m_known = {info.exists(), info.size(), info.lastModified(), fingerprintOfFile(m_path)};
}

void RecordFile::giveUp(const QString &error)
{
    refuse(error);
    rememberAsItIs();
}

void RecordFile::refuse(const QString &error)
{
    printReportLine(QStringLiteral("Failed to load %1: %2").arg(m_name, error));
    const QString aside = asideName();
    // Only a regular file is copied. Anything else (a folder, a fifo, a
    // device) is moved aside as it is, and so is a link, whatever it points
    // at: the user's other file stays untouched, and the next save writes a
    // file of its own here instead of writing through the link.
    const QFileInfo info(m_path);
    if (!info.isSymLink() && info.isFile() && QFile::copy(m_path, aside))
        return;
    // Unreadable files cannot be copied, but they can still be moved aside.
    if (QFile::rename(m_path, aside))
        return;
    m_writesRefused = true;
}

QString RecordFile::asideName() const
{
    const QString stamp = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
    QString aside = m_path + QStringLiteral(".corrupt-") + stamp;
    for (int n = 2; QFileInfo::exists(aside) || QFileInfo(aside).isSymLink(); ++n)
        aside = m_path + QStringLiteral(".corrupt-") + stamp + QStringLiteral("-%1").arg(n);
    return aside;
}

void RecordFile::keepAside(const QByteArray &bytes, const QString &error) const
{
    printReportLine(QStringLiteral("Failed to load %1: %2").arg(m_name, error));
    QFile aside(asideName());
    if (aside.open(QIODevice::NewOnly))
        aside.write(bytes);
}

RecordFile::Saved RecordFile::failed(const QString &why) const
{
    printReportLine(QStringLiteral("Failed to save %1: %2").arg(m_name, why));
    return Saved::Failed;
}

RecordFile::Saved RecordFile::save(const QByteArray &bytes, QByteArray &displaced)
{
    if (m_writesRefused)
        return failed(
            QStringLiteral("%1 could not be read or kept aside, so it is not overwritten").arg(m_path));
    // A folder that only lets its files be written (a shared or managed
    // one) has no room for a temporary file: the file is then rewritten in
    // place, not atomically, but only there.
    const QFileInfo target = finalFile();
    if (target.isFile() && target.isWritable() && !QFileInfo(target.absolutePath()).isWritable())
        return saveInPlace(bytes);

    // Named as QSaveFile names its files, so that a save killed halfway
    // leaves a stray file that the next start recognises and removes.
    const QString targetPath = target.absoluteFilePath();
    // A file made read-only is one its owner wants kept as it is.
    if (target.exists() && !target.isWritable())
        return failed(QStringLiteral("%1: Existing file %2 is not writable").arg(m_path, targetPath));
    QString temporary;
    int fd = -1;
    for (int attempt = 0; fd < 0 && attempt < 100; ++attempt) {
        QString letters;
        for (int i = 0; i < 6; ++i)
            letters += QChar((i % 2 ? u'a' : u'A') + char16_t(QRandomGenerator::global()->bounded(26)));
        temporary = targetPath + u'.' + letters;
        fd = ::open(QFile::encodeName(temporary).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0 && errno != EEXIST)
            break;
    }
    if (fd < 0)
        return failed(QStringLiteral("%1: %2").arg(m_path, QString::fromLocal8Bit(std::strerror(errno))));
    struct stat old;
    if (::stat(QFile::encodeName(targetPath).constData(), &old) == 0)
        ::fchmod(fd, old.st_mode & 07777);
    // On a full disk (or over a file size limit) a write comes up short; the
    // old file then stays as it is.
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.constData() + written, size_t(bytes.size() - written));
        if (n <= 0 && errno != EINTR)
            break;
        written += std::max<ssize_t>(n, 0);
    }
    const bool complete = written == bytes.size() && ::fsync(fd) == 0;
    const int writeErrno = errno;
    ::close(fd);
    const auto discard = [&temporary] { QFile::remove(temporary); };
    if (!complete) {
        discard();
        return failed(
            QStringLiteral("%1: %2").arg(m_path, QString::fromLocal8Bit(std::strerror(writeErrno))));
    }

    if (beforeReplace)
        beforeReplace(m_path);
    const QByteArray temporaryName = QFile::encodeName(temporary);
    const QByteArray targetName = QFile::encodeName(targetPath);
    if (swapIntoPlace(temporary, targetPath)) {
        QString ignored;
        const std::optional<QByteArray> old = readWhole(temporary, ignored);
        discard();
        const bool wasKnown = m_known.exists && old && fingerprintOf(*old) == m_known.hash;
        remember(fingerprintOf(bytes));
        if (wasKnown || !old)
            return Saved::Yes;
        displaced = *old;
        return Saved::Displaced;
    }
    if (errno == ENOENT) {
        // Nothing to swap with: put in place unless someone else has made
        // the file meanwhile.
#ifdef RENAME_NOREPLACE
        if (::renameat2(AT_FDCWD, temporaryName.constData(), AT_FDCWD, targetName.constData(),
                        RENAME_NOREPLACE)
            == 0) {
            remember(fingerprintOf(bytes));
            return Saved::Yes;
        }
        if (errno == EEXIST) {
            discard();
            return Saved::Overtaken;
        }
#endif
    }
    if (errno != ENOENT && errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP) {
        const int swapErrno = errno;
        discard();
        return failed(QStringLiteral("%1: %2").arg(m_path, QString::fromLocal8Bit(std::strerror(swapErrno))));
    }
    // A file system that cannot swap: the file is looked at once more, just
    // before the rename, and a change another program made meanwhile taken
    // in rather than replaced.
    if (!unchanged()) {
        discard();
        return Saved::Overtaken;
    }
    if (::rename(temporaryName.constData(), targetName.constData()) != 0) {
        const int renameErrno = errno;
        discard();
        return failed(
            QStringLiteral("%1: %2").arg(m_path, QString::fromLocal8Bit(std::strerror(renameErrno))));
    }
    remember(fingerprintOf(bytes));
    return Saved::Yes;
}

bool RecordFile::swapIntoPlace(const QString &temporary, const QString &target) const
{
#ifdef RENAME_EXCHANGE
    return ::renameat2(AT_FDCWD, QFile::encodeName(temporary).constData(), AT_FDCWD,
                       QFile::encodeName(target).constData(), RENAME_EXCHANGE)
        == 0;
#else
    Q_UNUSED(temporary);
    Q_UNUSED(target);
    errno = ENOSYS;
    return false;
#endif
}

RecordFile::Saved RecordFile::saveInPlace(const QByteArray &bytes)
{
    // Written in place there is no later moment to look: it is now.
    if (!unchanged())
        return Saved::Overtaken;
    if (beforeReplace)
        beforeReplace(m_path);
    QFile file(finalFile().absoluteFilePath());
    errno = 0;
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size()
        || !file.flush()) {
        const QString why = errno != 0 ? QString::fromLocal8Bit(std::strerror(errno)) : file.errorString();
        return failed(QStringLiteral("%1: %2").arg(m_path, why));
    }
    file.close();
    remember(fingerprintOf(bytes));
    return Saved::Yes;
}

QFileInfo RecordFile::finalFile() const
{
    const QFileInfo info(m_path);
    if (!info.isSymLink())
        return info;
    if (info.exists())
        return QFileInfo(info.canonicalFilePath());
    return QFileInfo(info.symLinkTarget());
}

QStringList RecordFile::conflictCopies() const
{
    // Beside the file that is synced: the link's target when it is a link.
    const QFileInfo file = finalFile();
    const QString suffix =
        file.fileName().endsWith(QLatin1String(".json")) ? QStringLiteral(".json") : QString();
    const QString stem = file.fileName().chopped(suffix.size());
    QStringList copies;
    const QDir folder = file.dir();
    // Filtered here: a name filter would compile a regular expression at
    // every start.
    for (const QString &name : folder.entryList(QDir::Files, QDir::Name)) {
        if (!name.endsWith(suffix) || name.size() < stem.size() + suffix.size())
            continue;
        // Between the stem and the suffix, as each tool names its copies.
        const QStringView middle =
            QStringView(name).sliced(stem.size(), name.size() - stem.size() - suffix.size());
        const bool syncthing =
            middle.size() > 15 && middle.startsWith(u".sync-conflict-", Qt::CaseInsensitive);
        const bool dropbox = middle.startsWith(u" (") && middle.endsWith(u')')
            && middle.contains(u"conflicted copy", Qt::CaseInsensitive);
        if (name.startsWith(stem, Qt::CaseInsensitive) && (syncthing || dropbox))
            copies.append(folder.filePath(name));
    }
    return copies;
}

bool RecordFile::keepMerged(const QString &copy, const QString &line)
{
    printReportLine(line);
    QString merged = copy + QStringLiteral(".merged");
    for (int n = 2; QFileInfo(merged).exists() || QFileInfo(merged).isSymLink(); ++n)
        merged = copy + QStringLiteral(".merged-%1").arg(n);
    return QFile::rename(copy, merged);
}

void RecordFile::reportUnmergeable(const QString &copy, const QString &error) const
{
    printReportLine(
        QStringLiteral("Failed to merge %1 from \"%2\": %3").arg(m_name, QFileInfo(copy).fileName(), error));
}

QStringList RecordFile::watchedPaths() const
{
    const QFileInfo info(m_path);
    QStringList paths{info.absolutePath(), m_path};
    const QFileInfo target = finalFile();
    if (target.absoluteFilePath() != info.absoluteFilePath())
        paths.append(target.absolutePath());
    return paths;
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
    for (const QString &name : info.dir().entryList(QDir::Files | QDir::NoSymLinks)) {
        if (name.size() != prefix.size() + 6)
            continue;
        const QStringView letters = QStringView(name).sliced(prefix.size());
        const auto has = [letters](char16_t from, char16_t to) {
            return std::any_of(letters.begin(), letters.end(), [=](QChar c) { return c >= from && c <= to; });
        };
        const bool onlyLetters = std::all_of(letters.begin(), letters.end(), [](QChar c) {
            return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
        });
        if (name.startsWith(prefix) && onlyLetters && has(u'a', u'z') && has(u'A', u'Z'))
            QFile::remove(info.dir().filePath(name));
    }
}
