#pragma once

#include "model/RecordCoding.h"

#include <QByteArray>
#include <QDateTime>
#include <QFileInfo>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// One file of records (history.json, palettes.json), read whole and written
// whole; the load and save that both stores share. Writes are atomic: a
// new file is written and synced beside the old one, then put in its place.
// A file that cannot be read or decoded is reported as
// "Failed to load <name>: <why>" and first kept aside as
// "<file>.corrupt-<UTC time>", so that the next save destroys nothing.
//
// Other programs write the file too (a sync tool, an editor): the file
// remembers what it held when this program last read or wrote it (size,
// time and a hash of the bytes), so that a change from outside is noticed
// and taken in instead of overwritten.
class RecordFile
{
public:
    // <folder>/<name>.json; makes the folder when it is missing.
    RecordFile(const QString &folder, const QString &name);

    QString path() const { return m_path; }
    // "palettes" or "history", as the messages name it.
    QString name() const { return m_name; }

    // The records a file held, with its bytes as read.
    template<typename T> struct Version
    {
        QList<T> records;
        QByteArray bytes;
    };

    // At start: the records in the file; none when it is missing or
    // unusable, and then no bytes either.
    template<typename T> Version<T> load(Decoded<QList<T>> (*decode)(const QByteArray &))
    {
        removeStrayTemporaryFiles();
        QString error;
        if (std::optional<QByteArray> data = read(error)) {
            Decoded<QList<T>> decoded = decode(*data);
            if (decoded.value) {
                remember(fingerprintOf(*data));
                return {std::move(*decoded.value), std::move(*data)};
            }
            error = decoded.error;
        }
        if (!error.isEmpty())
            giveUp(error);
        else
            m_known = {};
        return {};
    }

    enum class Reload {
        Unchanged,  // as last read or written, or gone (the next save writes it again)
        Changed,    // another program wrote it; `fresh` holds what it holds now
        Unreadable, // changed, but cannot be read or decoded (yet)
    };
    enum class Look {
        Thoroughly, // size, time and the hash of the bytes
        Quickly,    // size and time alone: for a look that a save checks again
    };
    // While running: takes in what another program wrote since.
    template<typename T>
    Reload reload(Decoded<QList<T>> (*decode)(const QByteArray &), Version<T> &fresh, QString &error,
                  Look look = Look::Thoroughly)
    {
        std::optional<QByteArray> data = readIfChanged(error, look);
        if (!data)
            return error.isEmpty() ? Reload::Unchanged : Reload::Unreadable;
        Decoded<QList<T>> decoded = decode(*data);
        if (!decoded.value) {
            error = decoded.error;
            return Reload::Unreadable;
        }
        remember(fingerprintOf(*data));
        fresh = {std::move(*decoded.value), std::move(*data)};
        return Reload::Changed;
    }
    // A file that stays unusable: reported and kept aside, as at start. The
    // caller keeps its records; the next save writes them.
    void giveUp(const QString &error);
    // A version a save displaced that cannot be decoded: reported and kept
    // beside the file, as an unusable file is.
    void keepAside(const QByteArray &bytes, const QString &error) const;

    enum class Saved {
        Yes,
        Failed,    // reported as "Failed to save <name>: <why>"; the old file stays
        Overtaken, // another program wrote the file meanwhile; nothing written
        Displaced, // written, but in place of a version never read: `displaced` holds it
    };
    // Puts these bytes in place as the new file. Where the file system can
    // swap two files at once, the new file is swapped with the old one and
    // the old one looked at afterwards, so that another program's version
    // that landed at the last moment is handed back instead of lost.
    Saved save(const QByteArray &bytes, QByteArray &displaced);
    // For tests: runs just before the new file is put in place.
    static inline std::function<void(const QString &path)> beforeReplace;

    // Copies that sync tools leave beside the file when two machines changed
    // it at once: "palettes.sync-conflict-<date>-<id>.json" (Syncthing),
    // "palettes (<anyone's> conflicted copy <date>).json" (Dropbox,
    // Nextcloud). Full paths, in name order.
    QStringList conflictCopies() const;
    // The records of one; nothing, and one line saying why, when it cannot
    // be read or decoded.
    template<typename T>
    std::optional<Version<T>> readConflictCopy(const QString &copy,
                                               Decoded<QList<T>> (*decode)(const QByteArray &))
    {
        QString error;
        if (std::optional<QByteArray> data = readWhole(copy, error)) {
            Decoded<QList<T>> decoded = decode(*data);
            if (decoded.value)
                return Version<T>{std::move(*decoded.value), std::move(*data)};
            error = decoded.error;
        }
        reportUnmergeable(copy, error);
        return std::nullopt;
    }
    // Prints the merge's line and renames the copy "<copy>.merged"; false
    // when it cannot be renamed.
    bool keepMerged(const QString &copy, const QString &line);

    // When the file was last changed; invalid when it is missing.
    QDateTime modified() const { return QFileInfo(m_path).lastModified(); }

    // A regular file's bytes; nothing, with the reason, when it cannot be read.
    static std::optional<QByteArray> readWhole(const QString &path, QString &error);

    // The folders and the file whose changes may concern this file.
    QStringList watchedPaths() const;

private:
    // What the file held when last read or written.
    struct Fingerprint
    {
        bool exists = false;
        qint64 size = 0;
        QDateTime modified;
        std::optional<size_t> hash; // of the bytes; none when they could not be read
    };
    // The file's bytes; nothing when it is missing (error left empty) or
    // cannot be read (error set). Copied, not mapped: another program that
    // rewrites the file in place while it is read must not crash this one.
    std::optional<QByteArray> read(QString &error) const;
    // The bytes when the file may have changed since it was last read or
    // written; nothing when it did not, or is gone (error left empty).
    std::optional<QByteArray> readIfChanged(QString &error, Look look);
    // Whether the file still holds what it held when last read or written.
    bool unchanged(Look look = Look::Thoroughly) const;
    static size_t fingerprintOf(const QByteArray &bytes);
    // Notes the file's size and time now, with the hash of what was read
    // or written.
    void remember(size_t hash);
    // Notes the file as it is now, whatever it holds.
    void rememberAsItIs();
    // Reports the file and keeps it aside. If it can be neither copied nor
    // moved, later writes are refused instead.
    void refuse(const QString &error);
    // "<file>.corrupt-<UTC time>", or with "-2", "-3"… when that is taken.
    QString asideName() const;
    void removeStrayTemporaryFiles() const;
    // The file that saves replace: the target when the path is a link, even
    // a link to nothing yet.
    QFileInfo finalFile() const;
    Saved saveInPlace(const QByteArray &bytes);
    // Swaps the new file at `temporary` into place; `temporary` then holds
    // the old one. False with errno set where that fails.
    bool swapIntoPlace(const QString &temporary, const QString &target) const;
    Saved failed(const QString &why) const;
    void reportUnmergeable(const QString &copy, const QString &error) const;

    QString m_name;
    QString m_path;
    bool m_writesRefused = false;
    Fingerprint m_known;
};
