#pragma once

#include "storage/ConsoleReport.h"
#include "storage/DataLocation.h"
#include "storage/KnownVersions.h"
#include "storage/RecordFile.h"
#include "storage/RecordFileWatch.h"
#include "storage/RecordMerge.h"

#include <QElapsedTimer>
#include <QList>
#include <QSet>

#include <climits>
#include <functional>
#include <type_traits>

// A store's list of records as its file holds it, kept in step with what
// other programs (a sync tool, an editor, the same program on another
// computer) write there. Every change is a function applied to the list,
// found by id ("add color X to palette P"), after taking in what the file
// holds now, so that nothing another program wrote is overwritten.
//
// Another side's version (the file replaced from outside, a sync tool's
// conflict copy, a version a save found it had displaced) is merged three
// ways, against the version both sides grew from, found among those this
// computer last read or wrote (KnownVersions), so that what one side
// deleted or renamed stays so. A file that cannot be decoded while the
// program runs is looked at again for about a second before it counts as
// unusable; even then the list shown stays as it was, and the next save
// writes it.
template<typename T> class SyncedRecords
{
public:
    using Records = QList<T>;
    // Changes the list; false when it does not apply (an unknown id), and
    // then nothing is saved.
    using Change = std::function<bool(Records &)>;
    using Decode = Decoded<Records> (*)(const QByteArray &);
    using Encode = Encoded (*)(const Records &);
    // Merges another side's version into this one against their common
    // base (none when it is not known), saying what it did in `report`.
    using Merge = Records (*)(const std::optional<Records> &base, const Records &mine, const Records &theirs,
                              bool theirsNewer, RecordMerge::Report &report);

    SyncedRecords(const QString &folder, const QString &name, Decode decode, Encode encode, Merge merge,
                  std::function<void()> changed)
        : m_file(folder, name)
        , m_known(DataLocation::stateFolder(folder), name)
        , m_decode(decode)
        , m_encode(encode)
        , m_merge(merge)
        , m_changed(std::move(changed))
    {
        QObject::connect(&m_watch, &RecordFileWatch::checkDue, &m_watch, [this] { check(); });
    }

    const Records &records() const { return m_records; }
    QString path() const { return m_file.path(); }

    // Reads the file as at start, takes in what changed there since this
    // computer last looked and the conflict copies, starts watching.
    void load()
    {
        m_unsaved = false;
        m_unreadableSince.invalidate();
        RecordFile::Version<T> loaded = m_file.load(m_decode);
        m_mineTime = m_file.modified();
        if (loaded.bytes.isNull()) {
            // Missing or unusable: what the folder gets next did not grow
            // from anything known here.
            m_known.clear();
            setRecords({});
        } else {
            // Compared with what this computer last had, so that what it
            // changed here and was lost since (a conflict a sync tool
            // settled while the program was closed) comes back.
            const QList<QByteArray> known = m_known.all();
            const Decoded<Records> last = known.isEmpty() ? Decoded<Records>{} : m_decode(known.first());
            setRecords(takeIn(last.value.value_or(loaded.records), loaded, true));
        }
        mergeConflictCopies();
        if (m_unsaved)
            saveAll();
        m_watch.watch(m_file.watchedPaths());
    }

    // Applies the change to the list as the file holds it now, then saves.
    // True once the change is on disk.
    bool change(const Change &change)
    {
        // The save looks again, thoroughly, as it puts the file in place.
        refresh(RecordFile::Look::Quickly);
        Records records = m_records;
        if (!change(records))
            return false;
        m_unsaved = true;
        m_mineTime = QDateTime::currentDateTimeUtc();
        setRecords(std::move(records));
        return saveAll();
    }

    // Writes the list as it stands, after taking in the file's changes.
    void save()
    {
        change([](Records &) { return true; });
    }

private:
    // After the first of a run of failed reads, the file is looked at again
    // this often, and given up on after giveUpMs.
    static constexpr int retryMs = 330;
    static constexpr qint64 giveUpMs = 950;

    void check()
    {
        if (refresh() && m_unsaved)
            saveAll();
        mergeConflictCopies();
        m_watch.watch(m_file.watchedPaths());
    }

    // Takes in what another program wrote. False while the file cannot be
    // read and is waited for.
    bool refresh(RecordFile::Look look = RecordFile::Look::Thoroughly)
    {
        QString error;
        RecordFile::Version<T> fresh;
        switch (m_file.reload(m_decode, fresh, error, look)) {
        case RecordFile::Reload::Unchanged:
            break;
        case RecordFile::Reload::Changed:
            setRecords(takeIn(m_records, fresh, m_file.modified() > m_mineTime));
            break;
        case RecordFile::Reload::Unreadable:
            // Most likely another writer has not finished yet.
            if (!m_unreadableSince.isValid())
                m_unreadableSince.start();
            if (!m_unreadableSince.hasExpired(giveUpMs)) {
                m_watch.checkAgainIn(retryMs);
                return false;
            }
            m_file.giveUp(error);
            // The list shown stays, and goes back on disk in place of what
            // could not be read.
            m_unsaved = true;
            break;
        }
        m_unreadableSince.invalidate();
        return true;
    }

    // The file as another side left it, grown (as far as anyone can tell)
    // from the newest version this computer knows: taken as it is when
    // nothing changed here since, else merged, to be saved.
    Records takeIn(const Records &mine, const RecordFile::Version<T> &theirs, bool theirsNewer)
    {
        RecordMerge::Report report;
        const Records merged = merge(newestKnown(theirs.records), mine, theirs.records, theirsNewer, report);
        m_known.add(theirs.bytes);
        m_unsaved = RecordMerge::distance(merged, theirs.records) != 0;
        if (m_unsaved)
            return merged;
        m_mineTime = m_file.modified();
        return theirs.records; // in its order too
    }

    Records merge(const std::optional<Records> &base, const Records &mine, const Records &theirs,
                  bool theirsNewer, RecordMerge::Report &report) const
    {
        if (RecordMerge::distance(mine, theirs) == 0)
            return theirs;
        if (base && RecordMerge::distance(*base, mine) == 0)
            return theirs; // nothing changed here
        return m_merge(base, mine, theirs, theirsNewer, report);
    }

    std::optional<Records> newestKnown(const Records &theirs) const
    {
        Decoded<Records> newest = m_decode(m_known.newest());
        if (!newest.value || !RecordMerge::mayHaveGrownFrom(*newest.value, theirs))
            return std::nullopt;
        return newest.value;
    }

    // A conflict copy was written at the same time as the file it lost or
    // won against, so both grew from a version older than either. When the
    // copy is a version of this computer's, the other one is the file as
    // it is now. Of the older versions, the one nearest the other side's;
    // of equals the oldest, so that in doubt a change is kept rather than
    // a deletion.
    std::optional<Records> baseOfCopy(const Records &copy) const
    {
        QList<Records> known;
        for (const QByteArray &bytes : m_known.all()) {
            if (Decoded<Records> decoded = m_decode(bytes); decoded.value)
                known.append(std::move(*decoded.value));
        }
        qsizetype older = 0;
        const Records *theirs = &copy;
        for (qsizetype i = 0; i < known.size(); ++i) {
            if (RecordMerge::distance(known.at(i), copy) == 0) {
                older = i + 1;
                theirs = &m_records;
                break;
            }
        }
        std::optional<Records> base;
        int nearest = INT_MAX;
        for (qsizetype i = older; i < known.size(); ++i) {
            if (!RecordMerge::mayHaveGrownFrom(known.at(i), *theirs))
                continue;
            const int distance = RecordMerge::distance(known.at(i), *theirs);
            if (distance <= nearest) {
                nearest = distance;
                base = known.at(i);
            }
        }
        return base;
    }

    bool saveAll()
    {
        if (m_unreadableSince.isValid())
            return false; // saved once the file can be read again, or given up on
        for (int attempt = 0; attempt < 3; ++attempt) {
            const Encoded encoded = m_encode(m_records);
            if (!encoded.data) {
                printReportLine(QStringLiteral("Failed to save %1: %2").arg(m_file.name(), encoded.error));
                return false;
            }
            QByteArray displaced;
            switch (m_file.save(*encoded.data, displaced)) {
            case RecordFile::Saved::Yes:
                m_known.add(*encoded.data);
                m_unsaved = false;
                return true;
            case RecordFile::Saved::Failed:
                return false;
            case RecordFile::Saved::Overtaken:
                if (!refresh())
                    return false;
                break;
            case RecordFile::Saved::Displaced: {
                // Another writer's version landed just before this one:
                // merged, and saved again when it brought anything.
                const Decoded<Records> theirs = m_decode(displaced);
                const std::optional<Records> base = theirs.value ? newestKnown(*theirs.value) : std::nullopt;
                m_known.add(*encoded.data);
                m_unsaved = false;
                if (!theirs.value) {
                    m_file.keepAside(displaced, theirs.error);
                    return true;
                }
                RecordMerge::Report report;
                Records merged = merge(base, m_records, *theirs.value, true, report);
                m_known.add(displaced);
                if (RecordMerge::distance(merged, m_records) == 0)
                    return true;
                m_unsaved = true;
                setRecords(std::move(merged));
                break;
            }
            }
        }
        // Another program keeps writing: later, once it has settled.
        m_watch.checkAgainIn(retryMs);
        return false;
    }

    void mergeConflictCopies()
    {
        for (const QString &copy : m_file.conflictCopies()) {
            // Each is looked at once a run; one that fails stays as it is.
            if (m_seenCopies.contains(copy))
                continue;
            m_seenCopies.insert(copy);
            const std::optional<RecordFile::Version<T>> theirs = m_file.readConflictCopy(copy, m_decode);
            if (!theirs)
                continue;
            refresh(RecordFile::Look::Quickly);
            RecordMerge::Report report;
            Records merged = merge(baseOfCopy(theirs->records), m_records, theirs->records,
                                   QFileInfo(copy).lastModified() > m_mineTime, report);
            m_known.add(theirs->bytes);
            if (RecordMerge::distance(merged, m_records) != 0) {
                m_unsaved = true;
                setRecords(std::move(merged));
            }
            if (!m_unsaved || saveAll())
                m_file.keepMerged(copy, report.summary(std::is_same_v<T, Palette>));
        }
    }

    void setRecords(Records records)
    {
        if (records == m_records)
            return;
        m_records = std::move(records);
        m_changed();
    }

    RecordFile m_file;
    KnownVersions m_known;
    RecordFileWatch m_watch;
    Decode m_decode;
    Encode m_encode;
    Merge m_merge;
    std::function<void()> m_changed;
    Records m_records;
    // Changes here that are not on disk yet.
    bool m_unsaved = false;
    // When this side's records last changed: of two renames, the newer stands.
    QDateTime m_mineTime;
    QElapsedTimer m_unreadableSince;
    QSet<QString> m_seenCopies;
};
