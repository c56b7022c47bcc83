#pragma once

#include "model/RecordCoding.h"

#include <QByteArray>
#include <QDateTime>
#include <QFileInfo>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// One file of records (history.json, palettes.json), read whole and written
// whole; the load and save that both stores share. Writes are atomic
// (QSaveFile). A file that cannot be read or decoded is reported as
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

    // At start: the records in the file; none when it is missing or unusable.
    template<typename T> QList<T> load(Decoded<QList<T>> (*decode)(const QByteArray &))
    {
        removeStrayTemporaryFiles();
        QString error;
        if (const std::optional<QByteArray> data = read(error)) {
            Decoded<QList<T>> decoded = decode(*data);
            if (decoded.value) {
                remember(fingerprintOf(*data));
                return std::move(*decoded.value);
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
        Changed,    // another program wrote it; `records` holds what it holds now
        Unreadable, // changed, but cannot be read or decoded (yet)
    };
    enum class Look {
        Thoroughly, // size, time and the hash of the bytes
        Quickly,    // size and time alone: for a look that a save checks again
    };
    // While running: takes in what another program wrote since.
    template<typename T>
    Reload reload(Decoded<QList<T>> (*decode)(const QByteArray &), QList<T> &records, QString &error,
                  Look look = Look::Thoroughly)
    {
        const std::optional<QByteArray> data = readIfChanged(error, look);
        if (!data)
            return error.isEmpty() ? Reload::Unchanged : Reload::Unreadable;
        Decoded<QList<T>> decoded = decode(*data);
        if (!decoded.value) {
            error = decoded.error;
            return Reload::Unreadable;
        }
        remember(fingerprintOf(*data));
        records = std::move(*decoded.value);
        return Reload::Changed;
    }
    // A file that stays unusable: reported and kept aside, as at start. The
    // caller keeps its records; the next save writes them.
    void giveUp(const QString &error);

    enum class Saved {
        Yes,
        Failed,    // reported as "Failed to save <name>: <why>"; the old file stays
        Overtaken, // another program wrote the file meanwhile; nothing written
    };
    // Puts these bytes in place as the new file.
    Saved save(const QByteArray &bytes);

    // Copies that sync tools leave beside the file when two machines changed
    // it at once: "palettes.sync-conflict-<date>-<id>.json" (Syncthing),
    // "palettes (<anyone's> conflicted copy <date>).json" (Dropbox,
    // Nextcloud). Full paths, in name order.
    QStringList conflictCopies() const;
    // The records of one; nothing, and one line saying why, when it cannot
    // be read or decoded.
    template<typename T>
    std::optional<QList<T>> readConflictCopy(const QString &copy,
                                             Decoded<QList<T>> (*decode)(const QByteArray &))
    {
        QString error;
        if (const std::optional<QByteArray> data = readWhole(copy, error)) {
            Decoded<QList<T>> decoded = decode(*data);
            if (decoded.value)
                return std::move(decoded.value);
            error = decoded.error;
        }
        reportUnmergeable(copy, error);
        return std::nullopt;
    }
    // Reports what was taken from the copy and renames it "<copy>.merged".
    void keepMerged(const QString &copy, const QString &what);

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
    static std::optional<QByteArray> readWhole(const QString &path, QString &error);
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
    void removeStrayTemporaryFiles() const;
    // The file that saves replace: the target when the path is a link.
    QFileInfo finalFile() const;
    void reportUnmergeable(const QString &copy, const QString &error) const;

    QString m_name;
    QString m_path;
    bool m_writesRefused = false;
    Fingerprint m_known;
};
