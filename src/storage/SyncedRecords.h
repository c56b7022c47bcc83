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
        m_unsaved = m_merged = false;
        m_unreadableSince.invalidate();
        RecordFile::Version<T> loaded = m_file.load(m_decode);
        m_mineTime = m_file.modified();
        if (loaded.bytes.isNull()) {
            // Missing or unusable: what the folder gets next did not grow
            // from anything known here.
            m_known.clear();
            setRecords({});
        } else {
            // Against what this computer last had, so that a change made
            // here that a sync tool settled against while the program was
            // closed is merged, not lost.
            const QByteArray last = m_known.newest();
            setRecords(
                takeIn(last == loaded.bytes ? loaded.records : m_decode(last).value.value_or(loaded.records),
                       loaded, true));
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
        if (!refresh())
            return m_watch.watch(m_file.watchedPaths());
        // The copies first: a save now would hide which version they lost to.
        mergeConflictCopies();
        if (m_unsaved)
            saveAll();
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

    // Whether two lists hold different records. Equal lists, the common
    // case at every load, are told without hashing every record.
    static bool differ(const Records &a, const Records &b)
    {
        return a != b && RecordMerge::distance(a, b) != 0;
    }

    // The file as another side left it: taken as it is when nothing here
    // is missing from it, else merged, to be saved.
    Records takeIn(const Records &mine, const RecordFile::Version<T> &theirs, bool theirsNewer)
    {
        const QDateTime written = m_file.modified();
        RecordMerge::Report report;
        Records merged = merge(
            mine, theirs.records, [&] { return baseOfFile(theirs.records, written); }, theirsNewer, report);
        // A version read here before, back again, and the merge going back
        // to a version written here before: the two sides keep answering
        // each other's merges, which may then never agree. Both unite the
        // two the same way instead, whichever is whose: nothing is lost, and
        // the next look finds them agreeing.
        if (differ(merged, theirs.records) && differ(merged, mine) && m_known.read(theirs.bytes)) {
            const std::optional<QByteArray> bytes = m_encode(merged).data;
            if (bytes && m_known.wrote(*bytes))
                merged = unite(mine, theirs);
        }
        m_known.add(theirs.bytes, KnownVersions::Origin::Read);
        m_unsaved = differ(merged, theirs.records); // after a unite too
        m_merged = m_unsaved;
        if (m_unsaved)
            return merged;
        m_mineTime = written;
        return theirs.records; // in its order too
    }

    Records unite(const Records &mine, const RecordFile::Version<T> &theirs) const
    {
        RecordMerge::Report report;
        const std::optional<QByteArray> bytes = m_encode(mine).data;
        const bool mineFirst = bytes && *bytes < theirs.bytes; // the same order on both sides
        return m_merge(std::nullopt, mineFirst ? mine : theirs.records, mineFirst ? theirs.records : mine,
                       false, report);
    }

    // The base is looked for only where the two differ: finding it decodes
    // known versions.
    Records merge(const Records &mine, const Records &theirs,
                  const std::function<std::optional<Records>()> &baseOfTheirs, bool theirsNewer,
                  RecordMerge::Report &report) const
    {
        if (!differ(mine, theirs))
            return theirs;
        const std::optional<Records> base = baseOfTheirs();
        if (base && !differ(*base, mine))
            return theirs; // nothing changed here
        return m_merge(completed(base, mine, theirs), mine, theirs, theirsNewer, report);
    }

    // A palette both sides have that is younger than the base is taken into
    // it as the other side has it, if this computer ever had it so (then
    // the other side has not changed it since); else by the name this
    // computer first knew it by, so that which side renamed it can still
    // be told, and without colors, so that none is taken for deleted.
    std::optional<Records> completed(std::optional<Records> base, const Records &mine,
                                     const Records &theirs) const
    {
        if constexpr (std::is_same_v<T, Palette>) {
            // A pointer into `records`, which may be the base being completed.
            const auto find = [](auto &records, const QUuid &id) {
                const auto found = std::find_if(records.begin(), records.end(),
                                                [&id](const T &record) { return record.id == id; });
                return found == records.end() ? nullptr : &*found;
            };
            QList<Records> known; // newest first, read when first needed
            const auto readKnown = [&] {
                if (known.isEmpty()) {
                    for (const KnownVersions::Version &version : m_known.all())
                        known.append(m_decode(version.bytes).value.value_or(Records()));
                }
            };
            for (const T &record : mine) {
                const T *there = find(theirs, record.id);
                if (!base || !there)
                    continue;
                if (T *before = find(*base, record.id)) {
                    // Both seem to have renamed it: a name this computer
                    // already knew it by is no rename there, only news of
                    // one made here that has not reached the other side.
                    if (before->name == record.name || before->name == there->name
                        || there->name == record.name)
                        continue;
                    readKnown();
                    if (std::any_of(known.cbegin(), known.cend(), [&](const auto &version) {
                            const T *then = find(version, record.id);
                            return then && then->name == there->name;
                        }))
                        before->name = there->name;
                    continue;
                }
                readKnown();
                const T *first = nullptr;
                for (const Records &version : std::as_const(known)) {
                    if (const T *then = find(version, record.id)) {
                        first = then;
                        if (*then == *there)
                            break;
                    }
                }
                if (!first)
                    continue;
                base->append(*first);
                if (!(*first == *there))
                    base->last().colors.clear();
            }
        }
        return base;
    }

    // A sync tool replaces the file without a conflict copy only when this
    // side's version had reached the other side: the new file grew from the
    // newest version known here. When this side's version lost, it is kept
    // as a conflict copy, and the new file grew from a version before it.
    std::optional<Records> baseOfFile(const Records &theirs, const QDateTime &written) const
    {
        for (const QString &copy : m_file.conflictCopies()) {
            QString error;
            const std::optional<QByteArray> bytes = RecordFile::readWhole(copy, error);
            if (bytes && m_known.wrote(*bytes))
                return baseOf(theirs, written);
        }
        return m_decode(m_known.newest()).value;
    }

    // The version that `theirs`, written at `written` by its writer's
    // clock, grew from, where it may not have seen what was written here
    // last: the newest known that it shows it had. Another side's, if this
    // computer read it before theirs was written; one written here after a
    // change here, if theirs shows that change. When in doubt an older one,
    // so that a change made here is kept rather than taken for one the
    // other side deleted.
    std::optional<Records> baseOf(const Records &theirs, const QDateTime &written) const
    {
        using Origin = KnownVersions::Origin;
        const QList<KnownVersions::Version> known = m_known.all();
        for (qsizetype i = 0; i < known.size(); ++i) {
            const KnownVersions::Version &version = known.at(i);
            // A merge is told by what it added to the version it took in;
            // the rest was the other side's own already.
            const bool tookIn = i + 1 < known.size() && known.at(i + 1).origin == Origin::Read;
            if ((version.origin == Origin::Merged && !tookIn)
                || (version.origin == Origin::Read && version.time > written))
                continue;
            Decoded<Records> records = m_decode(version.bytes);
            if (!records.value)
                continue;
            if (version.origin == Origin::Read)
                return records.value;
            const Decoded<Records> before =
                i + 1 < known.size() ? m_decode(known.at(i + 1).bytes) : Decoded<Records>{Records{}, {}};
            if (before.value && RecordMerge::shows(*before.value, *records.value, theirs))
                return records.value;
        }
        return std::nullopt;
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
                noteSaved(*encoded.data);
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
                noteSaved(*encoded.data);
                const Decoded<Records> theirs = m_decode(displaced);
                if (!theirs.value) {
                    m_file.keepAside(displaced, theirs.error);
                    return true;
                }
                const QDateTime now = QDateTime::currentDateTimeUtc();
                RecordMerge::Report report;
                Records merged = merge(
                    m_records, *theirs.value, [&] { return baseOf(*theirs.value, now); }, true, report);
                m_known.add(displaced, KnownVersions::Origin::Read);
                if (!differ(merged, m_records))
                    return true;
                m_unsaved = m_merged = true;
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
            // One that cannot be merged is left as it is, and looked at
            // again only at the next start.
            if (m_failedCopies.contains(copy))
                continue;
            const std::optional<RecordFile::Version<T>> theirs = m_file.readConflictCopy(copy, m_decode);
            if (!theirs) {
                m_failedCopies.insert(copy);
                continue;
            }
            // A copy of this computer's own lost to a version that was
            // merged with it when it came in.
            RecordMerge::Report report;
            if (!m_known.wrote(theirs->bytes)) {
                const QDateTime written = QFileInfo(copy).lastModified();
                Records merged = merge(
                    m_records, theirs->records, [&] { return baseOf(theirs->records, written); },
                    written > m_mineTime, report);
                if (differ(merged, m_records)) {
                    // Before the merge's own, which is told by what it added to it.
                    m_known.add(theirs->bytes, KnownVersions::Origin::Read);
                    m_unsaved = m_merged = true;
                    setRecords(std::move(merged));
                }
            }
            if ((m_unsaved && !saveAll())
                || !m_file.keepMerged(copy,
                                      report.summary(std::is_same_v<T, Palette>, QFileInfo(copy).fileName())))
                m_failedCopies.insert(copy);
        }
    }

    void noteSaved(const QByteArray &bytes)
    {
        m_known.add(bytes, m_merged ? KnownVersions::Origin::Merged : KnownVersions::Origin::Changed);
        m_unsaved = m_merged = false;
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
    // Changes here that are not on disk yet, and whether they came from a merge.
    bool m_unsaved = false;
    bool m_merged = false;
    // When this side's records last changed: of two renames, the newer stands.
    QDateTime m_mineTime;
    QElapsedTimer m_unreadableSince;
    QSet<QString> m_failedCopies;
};
