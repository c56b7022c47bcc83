#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// The last versions of one record file that this computer read from the
// data folder or wrote there, as bytes, newest first. When another side's
// version has to be merged, the one it grew from is among them. Kept in
// this computer's state folder, which no sync tool copies, so that they
// survive a restart and are never mistaken for the other side's.
class KnownVersions
{
public:
    KnownVersions(const QString &stateFolder, const QString &name);

    // Notes a version read or written; the oldest beyond `kept` are
    // forgotten. A version the same as the newest is noted once.
    void add(const QByteArray &bytes);
    // Forgets them all: what comes next grew from nothing known.
    void clear();
    // Newest first; a version that can no longer be read is left out.
    QList<QByteArray> all() const;
    // Empty when there is none.
    QByteArray newest() const;
    bool isEmpty() const { return m_numbers.isEmpty(); }

    static constexpr int kept = 12;

private:
    QString fileOf(qint64 number) const;

    QString m_folder;
    QString m_name;
    QList<qint64> m_numbers;     // oldest first
    mutable QByteArray m_newest; // read when first needed
};
