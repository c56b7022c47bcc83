#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

// The last versions of one record file that this computer read from the
// data folder (another side's) or wrote there (its own), newest first.
// When another side's version has to be merged, the one it grew from is
// among them. Kept in this computer's state folder, which no sync tool
// copies, so that they survive a restart and are never taken for the
// other side's.
class KnownVersions
{
public:
    enum class Origin {
        Read,    // another side's, as read from the folder
        Changed, // written here after a change made here
        Merged,  // written here after merging another side's version
    };
    struct Version
    {
        QByteArray bytes;
        Origin origin;
        QDateTime time; // when it became known here: read, or written here
    };

    KnownVersions(const QString &stateFolder, const QString &name);

    // Notes a version; the oldest beyond `kept` are forgotten. A version the
    // same as the newest is noted once.
    void add(const QByteArray &bytes, Origin origin);
    // Forgets them all: what comes next grew from nothing known here.
    void clear();
    // Newest first; a version that can no longer be read is left out.
    QList<Version> all() const;
    // Empty when there is none.
    QByteArray newest() const;
    // Whether these bytes are a version written here, or read here.
    bool wrote(const QByteArray &bytes) const;
    bool read(const QByteArray &bytes) const;

    static constexpr int kept = 32;

private:
    struct Entry
    {
        qint64 number;
        Origin origin;
    };
    QString fileOf(const Entry &entry) const;
    bool holds(const QByteArray &bytes, bool read) const;

    QString m_folder;
    QString m_name;
    QList<Entry> m_entries;      // oldest first
    mutable QByteArray m_newest; // read when first needed
};
