#include "TwoComputers.h"

#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"
#include "storage/RecordMerge.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QTemporaryDir>
#include <QThread>

#include <atomic>
#include <cstdio>
#include <fcntl.h>
#include <memory>

namespace {

const QStringList syncedFiles = {QStringLiteral("palettes"), QStringLiteral("history")};

QByteArray bytesOf(const QString &path, QDateTime *modified = nullptr)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // The time of the very file read, as a sync tool records it with the
    // content: the path may be replaced between two looks.
    if (modified)
        *modified = file.fileTime(QFileDevice::FileModificationTime);
    return file.readAll();
}

// The sync tool: polls both folders, and pushes each change after a delay.
class FolderSync
{
public:
    // On a thread of its own when `threaded`; else only when told to.
    FolderSync(const QStringList &folders, quint32 seed, int minMs, int maxMs, bool threaded)
        : m_folders(folders)
        , m_random(seed)
        , m_minMs(minMs)
        , m_maxMs(maxMs)
    {
        m_clock.start();
        if (!threaded)
            return;
        m_thread.reset(QThread::create([this] {
            while (!m_stop)
                poll();
        }));
        m_thread->start();
    }
    ~FolderSync()
    {
        m_stop = true;
        if (m_thread)
            m_thread->wait();
    }
    int conflicts() const { return m_conflicts; }
    bool inStep() const { return m_inStep; }

    // Pushes what changed on this side since the tool last looked.
    void pushFrom(int side)
    {
        for (const QString &file : syncedFiles)
            push(file, side);
        m_inStep = std::all_of(syncedFiles.cbegin(), syncedFiles.cend(), [this](const QString &file) {
            return bytesOf(path(0, file)) == bytesOf(path(1, file));
        });
    }

private:
    QString path(int side, const QString &file) const { return m_folders[side] + u'/' + file + ".json"; }

    void poll()
    {
        bool settled = true;
        for (const QString &file : syncedFiles) {
            for (int side : {0, 1}) {
                const QByteArray now = bytesOf(path(side, file));
                if (now != m_seen[side][file] && !m_due[side].contains(file))
                    m_due[side][file] = m_clock.elapsed() + m_random.bounded(m_minMs, m_maxMs + 1);
                m_seen[side][file] = now;
                if (m_due[side].contains(file) && m_due[side][file] <= m_clock.elapsed()) {
                    m_due[side].remove(file);
                    push(file, side);
                }
                settled = settled && !m_due[side].contains(file);
            }
            settled = settled && m_seen[0][file] == m_seen[1][file];
        }
        m_inStep = settled;
        QThread::msleep(2);
    }

    void push(const QString &file, int from)
    {
        const int to = 1 - from;
        QDateTime mineTime, theirTime;
        const QByteArray mine = bytesOf(path(from, file), &mineTime),
                         theirs = bytesOf(path(to, file), &theirTime);
        if (mine == m_synced[file] || mine.isEmpty())
            return;
        if (theirs == m_synced[file] || theirs == mine) {
            put(to, file + ".json", mine, mineTime, theirs);
            m_synced[file] = mine;
            return;
        }
        ++m_conflicts;
        const bool mineWins = mineTime >= theirTime;
        const int loser = mineWins ? to : from;
        const QByteArray &won = mineWins ? mine : theirs, &lost = mineWins ? theirs : mine;
        // As Syncthing does it: the losing version is kept aside first.
        keepCopy(file, loser, lost, mineWins ? theirTime : mineTime);
        put(loser, file + ".json", won, mineWins ? mineTime : theirTime, lost);
        m_synced[file] = won;
    }

    void keepCopy(const QString &file, int loser, const QByteArray &bytes, const QDateTime &time)
    {
        QDateTime stamp = QDateTime::currentDateTimeUtc();
        QString name;
        do {
            name = QStringLiteral("%1.sync-conflict-%2-%3.json")
                       .arg(file, stamp.toString(QStringLiteral("yyyyMMdd-HHmmss")),
                            loser ? "BBBBBBB" : "AAAAAAA");
            stamp = stamp.addSecs(1);
        } while (m_copies.contains(name));
        m_copies.insert(name);
        for (int side : {0, 1})
            put(side, name, bytes, time, {});
    }

    // Through a temporary file swapped into place; whatever it swapped out
    // that was not the version expected there is kept as a conflict copy.
    void put(int side, const QString &name, const QByteArray &bytes, const QDateTime &time,
             const QByteArray &expected)
    {
        const QString target = m_folders[side] + u'/' + name, temporary = target + ".syncing";
        QFile file(temporary);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size()
            || !file.flush())
            qFatal("the sync tool cannot write %s", qPrintable(temporary));
        file.setFileTime(time, QFileDevice::FileModificationTime);
        file.close();
        const QByteArray from = QFile::encodeName(temporary), into = QFile::encodeName(target);
        if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, into.constData(), RENAME_EXCHANGE) != 0) {
            ::rename(from.constData(), into.constData());
            return;
        }
        QDateTime written;
        const QByteArray displaced = bytesOf(temporary, &written);
        QFile::remove(temporary);
        if (displaced != expected && !displaced.isEmpty() && name.endsWith(u"s.json"))
            keepCopy(name.chopped(5), side, displaced, written);
    }

    QStringList m_folders;
    QRandomGenerator m_random;
    int m_minMs, m_maxMs;
    QElapsedTimer m_clock;
    QHash<QString, QByteArray> m_seen[2], m_synced;
    QHash<QString, qint64> m_due[2];
    QSet<QString> m_copies;
    std::atomic<int> m_conflicts = 0;
    std::atomic<bool> m_inStep = false, m_stop = false;
    std::unique_ptr<QThread> m_thread;
};

void spin(int ms)
{
    QElapsedTimer timer;
    timer.start();
    do
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    while (!timer.hasExpired(ms));
}

QByteArray key(const QUuid &palette, const QUuid &color)
{
    return palette.toRfc4122() + color.toRfc4122();
}

const Palette *find(const QList<Palette> &palettes, const QUuid &id)
{
    for (const Palette &palette : palettes) {
        if (palette.id == id)
            return &palette;
    }
    return nullptr;
}

} // namespace

TwoComputers::TwoComputers(quint32 seed, int minSyncMs, int maxSyncMs)
    : m_random(seed)
    , m_minSyncMs(minSyncMs)
    , m_maxSyncMs(maxSyncMs)
{
}

void TwoComputers::round(int operations, int maxPauseMs)
{
    QTemporaryDir folders[2];
    // Each computer keeps what it knows of its folder apart, as two machines do.
    std::unique_ptr<PaletteStorage> palettes[2];
    std::unique_ptr<HistoryStorage> history[2];
    for (int side : {0, 1}) {
        palettes[side] = std::make_unique<PaletteStorage>(folders[side].path());
        history[side] = std::make_unique<HistoryStorage>(folders[side].path());
    }
    FolderSync sync({folders[0].path(), folders[1].path()}, m_random.generate(), m_minSyncMs, m_maxSyncMs,
                    !m_stepwise);
    // Stepwise, the stores see each step through before the next.
    const auto settle = [&] { spin(m_minSyncMs); };

    // What each side did.
    QHash<QUuid, Palette> deleted; // as the deleting side saw it
    QSet<QUuid> created;
    QHash<QUuid, QString> renamedOnce; // the last name, while only one side renames it
    QHash<QUuid, int> renamedBy;
    QSet<QByteArray> added, removed;
    QList<QPair<int, ColorItem>> picks;
    QList<QPair<int, QList<ColorItem>>> clears;
    QHash<QByteArray, int> madeBy; // which side created a palette, added a color, picked an entry
    // Whether this side may change or delete what was made: anything, or in
    // `ownRecordsOnly` rounds what it made itself.
    const auto mayDelete = [&](int side, const QByteArray &what) {
        return !m_ownRecordsOnly || madeBy.value(what, side) == side;
    };
    const auto anyPalette = [&](int side) -> const Palette * {
        QList<const Palette *> choice;
        for (const Palette &palette : palettes[side]->palettes()) {
            if (mayDelete(side, palette.id.toRfc4122()))
                choice.append(&palette);
        }
        return choice.isEmpty() ? nullptr : choice.at(m_random.bounded(int(choice.size())));
    };
    for (int n = 0; n < operations; ++n) {
        const int side = int(m_random.bounded(2));
        const Palette *palette = anyPalette(side);
        const int what = int(m_random.bounded(20));
        const auto colorsMayGo = [&] {
            return std::all_of(history[side]->colors().cbegin(), history[side]->colors().cend(),
                               [&](const ColorItem &item) { return mayDelete(side, item.id.toRfc4122()); });
        };
        if (what < 3 || !palette) {
            const QUuid id = palettes[side]->createPalette(QStringLiteral("p%1").arg(n)).id;
            created.insert(id);
            madeBy.insert(id.toRfc4122(), side);
        } else if (what < 6) {
            renamedBy[palette->id] |= 1 << side;
            renamedOnce[palette->id] = QStringLiteral("r%1").arg(n);
            palettes[side]->renamePalette(palette->id, renamedOnce[palette->id]);
        } else if (what < 10) {
            const ColorItem item = ColorItem::create(QStringLiteral("c%1").arg(n), n % 7 / 7.0, 0.5, 0.5);
            added.insert(key(palette->id, item.id));
            madeBy.insert(key(palette->id, item.id), side);
            palettes[side]->addColor(item, palette->id);
        } else if (what < 12 && !palette->colors.isEmpty()
                   && mayDelete(side, key(palette->id, palette->colors.last().id))) {
            const QUuid id = palette->colors.last().id;
            removed.insert(key(palette->id, id));
            palettes[side]->removeColor(id, palette->id);
        } else if (what < 14 && mayDelete(side, palette->id.toRfc4122())) {
            deleted.insert(palette->id, *palette);
            palettes[side]->deletePalette(palette->id);
        } else if (what < 19) {
            // Apart from each other by more than the history's near-duplicate distance.
            const ColorItem item = ColorItem::create({}, n % 40 * 0.025, n / 40 % 40 * 0.025, 0.5);
            picks.append({n, item});
            madeBy.insert(item.id.toRfc4122(), side);
            history[side]->addColor(item);
        } else if (what == 19 && colorsMayGo()) {
            clears.append({n, history[side]->colors()});
            history[side]->clear();
        }
        if (!m_stepwise) {
            spin(int(m_random.bounded(maxPauseMs + 1)));
            continue;
        }
        if (m_random.bounded(2)) {
            sync.pushFrom(int(m_random.bounded(2)));
            settle();
        }
    }

    // Settled: the folders agree, and the stores with them, for a while.
    QElapsedTimer waited, agreed;
    waited.start();
    agreed.start();
    while (!agreed.hasExpired(1500) && !waited.hasExpired(30000)) {
        if (m_stepwise) {
            for (int side : {0, 1}) {
                sync.pushFrom(side);
                settle();
            }
        }
        spin(20);
        const bool same = sync.inStep()
            && RecordMerge::distance(palettes[0]->palettes(), palettes[1]->palettes()) == 0
            && RecordMerge::distance(history[0]->colors(), history[1]->colors()) == 0;
        if (!same)
            agreed.restart();
    }
    Figures &f = m_figures;
    ++f.rounds;
    f.operations += operations;
    f.conflicts += sync.conflicts();
    if (!agreed.hasExpired(1500)) {
        ++f.unsettled;
        f.faults.append(QStringLiteral("round %1: the folders did not settle").arg(f.rounds));
    }
    const auto fault = [&](int &count, const QString &what) {
        ++count;
        f.faults.append(QStringLiteral("round %1: %2").arg(f.rounds).arg(what));
    };

    const QList<Palette> &end = palettes[0]->palettes();
    for (const QUuid &id : std::as_const(created)) {
        if (!deleted.contains(id) && !find(end, id))
            fault(f.lost, QStringLiteral("a palette was lost"));
    }
    for (auto i = deleted.cbegin(); i != deleted.cend(); ++i) {
        const Palette *back = find(end, i.key());
        if (back && back->name == i->name && RecordMerge::distance(back->colors, i->colors) == 0)
            fault(f.returned, QStringLiteral("deleted palette \"%1\" returned").arg(back->name));
    }
    for (const Palette &palette : end) {
        const int renamers = renamedBy.value(palette.id);
        if ((renamers == 1 || renamers == 2) && !deleted.contains(palette.id)) {
            if (palette.name != renamedOnce[palette.id])
                fault(f.lost,
                      QStringLiteral("a rename was lost: \"%1\", not the last, \"%2\"")
                          .arg(palette.name, renamedOnce[palette.id]));
        }
        QSet<QByteArray> there;
        for (const ColorItem &item : palette.colors)
            there.insert(key(palette.id, item.id));
        for (const QByteArray &color : std::as_const(added)) {
            // A palette that came back after a delete comes back as the other side had it.
            if (color.startsWith(palette.id.toRfc4122()) && !removed.contains(color) && !there.contains(color)
                && !deleted.contains(palette.id))
                fault(f.lost, QStringLiteral("a color was lost"));
        }
        for (const QByteArray &color : std::as_const(removed)) {
            if (there.contains(color) && !deleted.contains(palette.id)) {
                const auto item =
                    std::find_if(palette.colors.cbegin(), palette.colors.cend(),
                                 [&](const ColorItem &c) { return key(palette.id, c.id) == color; });
                fault(f.returned,
                      QStringLiteral("removed color %1 returned to \"%2\"").arg(item->name, palette.name));
            }
        }
    }

    QSet<QUuid> shown;
    for (const ColorItem &item : history[0]->colors())
        shown.insert(item.id);
    const int lastClear = clears.isEmpty() ? -1 : clears.last().first;
    QList<QUuid> since;
    for (const auto &[n, item] : std::as_const(picks)) {
        if (n > lastClear)
            since.append(item.id);
    }
    // Picks after the last clear that fit the history stand in it (when
    // nothing older that survived a clear shares their second and crowds
    // them out).
    for (const QUuid &id : std::as_const(since)) {
        if (shown.size() < HistoryStorage::maxColors && !shown.contains(id))
            fault(f.lost, QStringLiteral("a pick was lost"));
    }
    for (const auto &[n, cleared] : std::as_const(clears)) {
        for (const ColorItem &item : cleared) {
            if (shown.contains(item.id))
                fault(f.returned, QStringLiteral("a cleared history entry returned"));
        }
    }
}
