#pragma once

#include "storage/ConsoleReport.h"
#include "storage/RecordFile.h"
#include "storage/RecordFileWatch.h"

#include <QElapsedTimer>
#include <QList>
#include <QSet>

#include <functional>
#include <memory>

// A store's list of records as its file holds it, kept in step with what
// other programs (a sync tool, an editor, the same program on another
// machine) write there. Every change is a function applied to the list,
// found by id ("add color X to palette P"), so that when the file changed
// since it was last read the change is applied to what the file holds now,
// and nothing another program wrote is overwritten.
//
// Changes not yet saved (the file was half-written by someone else, or the
// disk refused) are kept and applied again on top of every reload, until a
// save takes them. A file that cannot be decoded while the program runs is
// looked at again for about a second before it counts as unusable; even
// then the list shown stays as it was, and the next save writes it.
template<typename T> class SyncedRecords
{
public:
    using Records = QList<T>;
    // Changes the list; false when it does not apply (an unknown id), and
    // then nothing is saved.
    using Change = std::function<bool(Records &)>;
    using Decode = Decoded<Records> (*)(const QByteArray &);
    using Encode = Encoded (*)(const Records &);
    // Takes into `records` what a conflict copy holds that they lack; says
    // what it took ("2 palettes and 5 colors").
    using Merge = QString (*)(Records &records, const Records &copy);

    SyncedRecords(const QString &folder, const QString &name, Decode decode, Encode encode, Merge merge,
                  std::function<void()> changed)
        : m_file(folder, name)
        , m_decode(decode)
        , m_encode(encode)
        , m_merge(merge)
        , m_changed(std::move(changed))
    {
        QObject::connect(&m_watch, &RecordFileWatch::checkDue, &m_watch, [this] { check(); });
    }

    const Records &records() const { return m_records; }
    QString path() const { return m_file.path(); }

    // Reads the file as at start, takes in conflict copies, starts watching.
    void load()
    {
        m_pending.clear();
        m_unreadableSince.invalidate();
        setRecords(m_file.load(m_decode));
        mergeConflictCopies();
        m_watch.watch(m_file.watchedPaths());
    }

    // Applies the change to the list as the file holds it now, then saves.
    // True once the change is on disk.
    bool change(const Change &change)
    {
        // The save looks again, thoroughly, just before the file is replaced.
        refresh(RecordFile::Look::Quickly);
        Records records = m_records;
        if (!change(records))
            return false;
        m_pending.append(change);
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
        if (refresh() && !m_pending.isEmpty())
            saveAll();
        mergeConflictCopies();
        m_watch.watch(m_file.watchedPaths());
    }

    // Takes in what another program wrote, with the changes not yet saved
    // on top. False while the file cannot be read and is waited for.
    bool refresh(RecordFile::Look look = RecordFile::Look::Thoroughly)
    {
        QString error;
        Records fresh;
        switch (m_file.reload(m_decode, fresh, error, look)) {
        case RecordFile::Reload::Unchanged:
            break;
        case RecordFile::Reload::Changed:
            for (const Change &change : std::as_const(m_pending))
                change(fresh);
            setRecords(std::move(fresh));
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
            m_pending.append([](Records &) { return true; });
            break;
        }
        m_unreadableSince.invalidate();
        return true;
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
            switch (m_file.save(*encoded.data)) {
            case RecordFile::Saved::Yes:
                m_pending.clear();
                return true;
            case RecordFile::Saved::Failed:
                return false;
            case RecordFile::Saved::Overtaken:
                if (!refresh())
                    return false;
                break;
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
            const std::optional<Records> theirs = m_file.readConflictCopy(copy, m_decode);
            if (!theirs)
                continue;
            const auto taken = std::make_shared<QString>();
            const Merge merge = m_merge;
            if (change([merge, taken, records = *theirs](Records &mine) {
                    *taken = merge(mine, records);
                    return true;
                }))
                m_file.keepMerged(copy, *taken);
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
    RecordFileWatch m_watch;
    Decode m_decode;
    Encode m_encode;
    Merge m_merge;
    std::function<void()> m_changed;
    Records m_records;
    QList<Change> m_pending;
    QElapsedTimer m_unreadableSince;
    QSet<QString> m_seenCopies;
};
