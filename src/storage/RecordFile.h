#pragma once

#include "model/RecordCoding.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

// One file of records (history.json, palettes.json), read whole and written
// whole; the load and save that both stores share. Writes are atomic
// (QSaveFile). A file that cannot be read or decoded is reported as
// "Failed to load <name>: <why>" and first kept aside as
// "<file>.corrupt-<UTC time>", so that the next save destroys nothing.
class RecordFile
{
public:
    // <folder>/<name>.json; makes the folder when it is missing.
    RecordFile(const QString &folder, const QString &name);

    QString path() const { return m_path; }

    // The records in the file; none when it is missing or unusable.
    template<typename T> QList<T> load(Decoded<QList<T>> (*decode)(const QByteArray &))
    {
        removeStrayTemporaryFiles();
        QString error;
        if (const std::optional<QByteArray> data = read(error)) {
            Decoded<QList<T>> decoded = decode(*data);
            if (decoded.value)
                return std::move(*decoded.value);
            error = decoded.error;
        }
        if (!error.isEmpty())
            refuse(error);
        return {};
    }

    // Writes what `writeRecords` puts into the writer as the new file, or
    // reports "Failed to save <name>: <why>" and leaves the old one.
    void save(const std::function<void(JsonWriter &)> &writeRecords);

private:
    // The file's bytes; nothing when it is missing (error left empty) or
    // cannot be read (error set). Copied, not mapped: another program that
    // rewrites the file in place while it is read must not crash this one.
    std::optional<QByteArray> read(QString &error) const;
    // Reports the file and keeps it aside. If it can be neither copied nor
    // moved, later writes are refused instead.
    void refuse(const QString &error);
    // Returns an empty text on success, the error's description otherwise.
    QString write(const std::function<void(JsonWriter &)> &writeRecords);
    void removeStrayTemporaryFiles() const;

    QString m_name;
    QString m_path;
    bool m_writesRefused = false;
};
