// Both file-backed stores: the history's and the palettes' rules, each
// change written at once; and the files a user's disk can hold. Whatever
// the file, the store loads (empty where it must), prints its one line, keeps
// a ".corrupt-" copy of what it refuses, stays usable, and never replaces a
// file it could not read without that copy.
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"
#include "support/StdoutCapture.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <csignal>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

ColorItem color(double r, double g, double b, double a = 1.0)
{
    return ColorItem::create(QStringLiteral("Picked Color"), r, g, b, a);
}

// Either store, opened on a folder: its file, its records and one more.
struct Opened
{
    Opened(bool isHistory, const QString &folder)
        : history(isHistory ? std::make_unique<HistoryStorage>(folder) : nullptr)
        , palettes(isHistory ? nullptr : std::make_unique<PaletteStorage>(folder))
    {
    }
    qsizetype count() const { return history ? history->colors().size() : palettes->palettes().size(); }
    void addOne() // far enough apart that none replaces another as a near duplicate
    {
        history ? history->addColor(ColorItem::create({}, (added++ % 50) * 0.02, 0.1, 0.1))
                : void(palettes->createPalette(QStringLiteral("added")));
    }
    std::unique_ptr<HistoryStorage> history;
    std::unique_ptr<PaletteStorage> palettes;
    int added = 0;
};

QString fileOf(bool history)
{
    return history ? QStringLiteral("history.json") : QStringLiteral("palettes.json");
}

// A well-formed file of `count` records (palettes of one color each).
QByteArray validFile(bool history, int count)
{
    QList<ColorItem> colors;
    QList<Palette> palettes;
    for (int n = 0; n < count; ++n) {
        colors.append({QUuid(uint(n), 0x1f2e, 0x4d3c, 0x8b, 0xa9, 1, 2, 3, 4, 5, 6),
                       QStringLiteral("Sample %1").arg(n), 0.25, 0.5, 0.75, 1.0,
                       QDateTime(QDate(2025, 3, 14), QTime(9, 26, 53), Qt::UTC)});
        palettes.append({colors[n].id, colors[n].name, {colors[n]}, colors[n].dateAdded});
    }
    return *(history ? RecordCoding::encodeColors(colors) : RecordCoding::encodePalettes(palettes)).data;
}

QStringList copiesAside(const QString &folder, bool history)
{
    return QDir(folder).entryList({fileOf(history) + QStringLiteral(".corrupt-*")},
                                  QDir::AllEntries | QDir::System);
}

// Exactly one line, "Failed to <verb> <store>: " and why.
bool isReport(const QByteArray &printed, const char *verb, bool history)
{
    const QByteArray start = "Failed to " + QByteArray(verb) + (history ? " history: " : " palettes: ");
    return printed.startsWith(start) && printed.size() > start.size() + 1 && printed.count('\n') == 1
        && printed.endsWith('\n');
}

// Runs `body` in a forked child, as "nobody" when the test runs as root
// (root ignores permissions), with a file-size limit that fails writes as a
// full disk does. Returns what the child found wrong, empty when nothing.
QString inChild(rlim_t fileSize, const std::function<QString()> &body)
{
    int channel[2];
    if (::pipe(channel) != 0)
        return QStringLiteral("no pipe");
    std::fflush(stdout);
    const pid_t pid = ::fork();
    if (pid == 0) {
        QByteArray result = "cannot drop privileges";
        if (::geteuid() != 0
            || (::setgroups(0, nullptr) == 0 && ::setgid(65534) == 0 && ::setuid(65534) == 0)) {
            std::signal(SIGXFSZ, SIG_IGN); // a failed write, not a dead process
            const rlimit limit{fileSize, fileSize};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            result = body().toUtf8();
        }
        [[maybe_unused]] const ssize_t n = ::write(channel[1], result.constData(), size_t(result.size()));
        ::_exit(0);
    }
    ::close(channel[1]);
    QFile pipe;
    pipe.open(channel[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    const QString report = QString::fromUtf8(pipe.readAll());
    int status = 0;
    ::waitpid(pid, &status, 0);
    return WIFSIGNALED(status) ? QStringLiteral("child died of signal %1").arg(WTERMSIG(status)) : report;
}

#define CHILD_CHECK(condition, what)                                                                         \
    if (!(condition))                                                                                        \
    return QStringLiteral("line %1: %2: %3").arg(__LINE__).arg(QStringLiteral(#condition), what)

} // namespace

class TestStores : public QObject
{
    Q_OBJECT

private slots:
    void historyNearDuplicates_data()
    {
        QTest::addColumn<QList<double>>("added"); // next to 0.5, 0.5, 0.5, 1
        QTest::addColumn<bool>("replaces");
        QTest::newRow("0.005 apart") << QList<double>{0.505, 0.505, 0.505, 1} << true;
        QTest::newRow("only alpha differs") << QList<double>{0.5, 0.5, 0.5, 0.3} << true;
        QTest::newRow("red 0.01 apart") << QList<double>{0.51, 0.5, 0.5, 1} << false;
        QTest::newRow("green 0.02 apart") << QList<double>{0.5, 0.52, 0.5, 1} << false;
        QTest::newRow("blue 0.02 apart") << QList<double>{0.5, 0.5, 0.52, 1} << false;
    }
    void historyNearDuplicates()
    {
        QFETCH(QList<double>, added);
        QFETCH(bool, replaces);
        QTemporaryDir dir;
        HistoryStorage history(dir.path());
        history.addColor(color(0.5, 0.5, 0.5));
        history.addColor(color(0.9, 0.1, 0.1));
        const ColorItem item = color(added[0], added[1], added[2], added[3]);
        history.addColor(item);
        // A repick goes to the top, not into the old one's place.
        QCOMPARE(history.colors().size(), replaces ? 2 : 3);
        QVERIFY(history.colors().first() == item);
    }

    void historyKeepsTheNewestTwenty()
    {
        QTemporaryDir dir;
        HistoryStorage history(dir.path());
        QList<ColorItem> added;
        for (int i = 0; i < 21; ++i) {
            added.append(color(i / 25.0, 0, 0));
            history.addColor(added.last());
        }
        QCOMPARE(history.colors().size(), 20);
        QVERIFY(history.colors().first() == added.last());
        QVERIFY(history.colors().last() == added.at(1)); // the first one fell off
        QCOMPARE(HistoryStorage(dir.path()).colors().size(), 20);
    }

    void historyChangesAreWrittenAndSignalled()
    {
        QTemporaryDir dir;
        HistoryStorage history(dir.path());
        QVERIFY(!QFile::exists(history.filePath())); // loading writes nothing
        QSignalSpy changes(&history, &HistoryStorage::colorsChanged);
        const ColorItem a = color(0.1, 0.1, 0.1, 0.5), b = color(0.9, 0.9, 0.9);
        for (const ColorItem &item : {a, b, color(0.5, 0.2, 0.2)})
            history.addColor(item);
        history.removeColor(a.id);
        history.removeColor(QUuid::createUuid()); // unknown: nothing changes
        QCOMPARE(changes.size(), 4);
        QCOMPARE(history.colors().last().id, b.id);
        QCOMPARE(HistoryStorage(dir.path()).colors(), history.colors());
        history.clear();
        history.clear(); // already empty: nothing to tell
        QCOMPARE(changes.size(), 5);
        StdoutCapture out;
        QVERIFY(HistoryStorage(dir.path()).colors().isEmpty());
        QCOMPARE(out.text(), QByteArray()); // an empty list on disk, not a missing or broken file
    }

    void paletteChangesAreWrittenInOrder()
    {
        QTemporaryDir dir;
        PaletteStorage storage(dir.path());
        QSignalSpy changes(&storage, &PaletteStorage::palettesChanged);
        // No checks on names: duplicates and blanks are the user's to choose.
        const Palette a = storage.createPalette(QStringLiteral("A"));
        const Palette b = storage.createPalette(QStringLiteral("A"));
        const Palette c = storage.createPalette(QStringLiteral("  "));
        QVERIFY(a.id != b.id);
        storage.renamePalette(c.id, QStringLiteral(" Brand ✓ "));
        // The same color twice is kept twice, and removed together.
        const ColorItem sky = color(0.2, 0.4, 0.8, 0.5), sea = color(0.1, 0.3, 0.5);
        for (const ColorItem &item : {sky, sea, sky})
            storage.addColor(item, c.id);
        QCOMPARE(storage.palette(c.id)->colors, (QList<ColorItem>{sky, sea, sky}));
        storage.removeColor(sky.id, c.id);
        storage.deletePalette(b.id);
        // A palette that is gone takes no change.
        storage.renamePalette(b.id, QStringLiteral("x"));
        storage.addColor(sea, b.id);
        storage.removeColor(sea.id, b.id);
        QVERIFY(!storage.palette(b.id));
        // An imported palette comes in one change, colors and all, at the end.
        const Palette imported = storage.createPalette(QStringLiteral("Imported"), {sky, sea});
        QCOMPARE(changes.size(), 10);
        QCOMPARE(imported.colors, (QList<ColorItem>{sky, sea}));
        QCOMPARE(storage.palettes(), (QList<Palette>{a, *storage.palette(c.id), imported}));
        QCOMPARE(storage.palette(c.id)->name, QStringLiteral(" Brand ✓ "));
        QCOMPARE(storage.palette(c.id)->colors, QList<ColorItem>{sea});
        StdoutCapture out;
        QCOMPARE(PaletteStorage(dir.path()).palettes(), storage.palettes());
        QCOMPARE(out.text(), QByteArray());
    }
    void loading_data()
    {
        QTest::addColumn<bool>("history");
        QTest::addColumn<QByteArray>("content"); // "<...>": something other than a file of that content
        QTest::addColumn<int>("count");          // -1: refused
        for (const bool history : {true, false}) {
            const QByteArray valid = validFile(history, 3);
            const auto row = [&](const char *what, const QByteArray &content, int count) {
                QTest::addRow("%s: %s", history ? "history" : "palettes", what)
                    << history << content << count;
            };
            row("empty array", "[]", 0);
            row("empty file", "", -1);
            row("cut after a comma", valid.left(valid.lastIndexOf(',') + 1), -1);
            row("trailing garbage", valid + "\n}{", -1);
            row("nested 100000 deep", QByteArray(100000, '[') + QByteArray(100000, ']'), -1);
            row("number beyond double", QByteArray(valid).replace("0.25", "1e400"), -1);
            row("compact, on one line", QByteArray(valid).replace('\n', ' ').replace("  ", ""), 3);
            row("components far out of range", QByteArray(valid).replace("0.25", "-1e308"), 3);
            for (const char *other : {"<folder>", "<symlink to notes>"})
                row(other, other, -1);
            row("<symlink to a file>", "<symlink to a file>", 2);
            // A link to nothing is a file not made yet: the first save writes its target.
            row("<dangling symlink>", "<dangling symlink>", 0);
        }
    }
    void loading()
    {
        QFETCH(bool, history);
        QFETCH(QByteArray, content);
        QFETCH(int, count);
        QTemporaryDir dir, elsewhere;
        const QString path = dir.filePath(fileOf(history));
        const QString real = elsewhere.filePath(QStringLiteral("synced.json"));
        const bool regular = !content.startsWith('<');
        if (content == "<folder>")
            QVERIFY(QDir().mkpath(path + QStringLiteral("/inside")));
        else if (!regular) {
            writeFile(real, content == "<symlink to a file>" ? validFile(history, count) : "kept");
            QVERIFY(QFile::link(content == "<dangling symlink>" ? dir.filePath(QStringLiteral("gone")) : real,
                                path));
        } else
            writeFile(path, content);

        StdoutCapture out;
        Opened opened(history, dir.path());
        const QByteArray printed = out.text();
        const QStringList copies = copiesAside(dir.path(), history);
        QCOMPARE(opened.count(), qMax(count, 0));
        QCOMPARE(copies.size(), count < 0 ? 1 : 0);
        QVERIFY2(count < 0 ? isReport(printed, "load", history) : printed.isEmpty(),
                 printed.left(300).constData());
        QVERIFY(
            count >= 0
            || QRegularExpression(QStringLiteral("\\.corrupt-\\d{8}T\\d{6}Z$")).match(copies[0]).hasMatch());
        opened.addOne();
        QCOMPARE(out.text(), printed); // saving says nothing
        QCOMPARE(Opened(history, dir.path()).count(), qMax(count, 0) + 1);
        if (count < 0 && regular)
            QCOMPARE(readFile(dir.filePath(copies.first())), content);
        // A data file kept elsewhere through a link is updated there, the link
        // kept; a link to anything else is moved aside, never written through.
        QCOMPARE(QFileInfo(path).isSymLink(), count >= 0 && !regular);
        QCOMPARE(readFile(real) == "kept",
                 content == "<symlink to notes>" || content == "<dangling symlink>");
        QVERIFY(QFileInfo(path).isFile());
    }

    void deniedOrFullDisk_data()
    {
        QTest::addColumn<bool>("history");
        QTest::addColumn<QList<bool>>("readWriteFolder"); // the file readable, writable; the folder writable
        QTest::addColumn<int>("fileSize");
        for (const bool history : {true, false}) {
            const auto row = [history](const char *what, QList<bool> readWriteFolder, int fileSize = 0) {
                QTest::addRow("%s: %s", history ? "history" : "palettes", what)
                    << history << readWriteFolder << fileSize;
            };
            row("unreadable file", {false, false, true});
            row("unreadable file, read-only folder", {false, false, false});
            row("write-only file, read-only folder", {false, true, false});
            row("read-only file", {true, false, true});
            row("read-only folder", {true, true, false});
            row("full disk", {true, true, true}, 3000);
        }
    }
    void deniedOrFullDisk()
    {
        QFETCH(bool, history);
        QFETCH(QList<bool>, readWriteFolder);
        QFETCH(int, fileSize);
        const bool readable = readWriteFolder[0], writable = readWriteFolder[1],
                   folderWritable = readWriteFolder[2];
        QTemporaryDir dir;
        const QString path = dir.filePath(fileOf(history));
        const QByteArray original = validFile(history, 2);
        writeFile(path, original);
        for (const QString &own : {dir.path(), path})
            QVERIFY(::geteuid() != 0 || ::chown(QFile::encodeName(own).constData(), 65534, 65534) == 0);
        QVERIFY(QFile::setPermissions(path,
                                      QFileDevice::Permissions(readable ? QFile::ReadOwner : 0)
                                          | (writable ? QFile::WriteOwner : QFileDevice::Permissions())));
        const QFileDevice::Permissions open = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
        QVERIFY(QFile::setPermissions(dir.path(), folderWritable ? open : open & ~QFile::WriteOwner));

        // A folder that takes no new file still lets a writable file be saved in place.
        const bool inPlace = readable && writable && !folderWritable;
        const bool savable = (!readable && folderWritable) || inPlace;
        const QString failure = inChild(fileSize ? rlim_t(fileSize) : RLIM_INFINITY, [&]() -> QString {
            StdoutCapture out;
            Opened opened(history, dir.path());
            const QByteArray loaded = out.text();
            CHILD_CHECK(opened.count() == (readable ? 2 : 0), QString::number(opened.count()));
            CHILD_CHECK(readable ? loaded.isEmpty() : isReport(loaded, "load", history),
                        QString::fromUtf8(loaded));
            // Saves that fail change nothing on disk; the store goes on in memory.
            QByteArray lastGood = readFile(path);
            int failed = 0;
            for (int n = 1; n <= (fileSize ? 40 : 2); ++n) {
                const qsizetype before = out.text().size();
                opened.addOne();
                const QByteArray printed = out.text().mid(before);
                CHILD_CHECK(opened.count() == qMin((readable ? 2 : 0) + n, history ? 20 : 99),
                            QString::number(opened.count()));
                if (printed.isEmpty()) {
                    CHILD_CHECK(Opened(history, dir.path()).count() == opened.count(), QString::number(n));
                    lastGood = readFile(path);
                    continue;
                }
                ++failed;
                CHILD_CHECK(isReport(printed, "save", history), QString::fromUtf8(printed));
                CHILD_CHECK(readFile(path) == lastGood, QStringLiteral("changed by a failed save"));
            }
            CHILD_CHECK(savable == (failed == 0), QString::number(failed) + QStringLiteral(" saves failed"));
            return {};
        });
        QVERIFY(QFile::setPermissions(dir.path(), open));
        QVERIFY2(failure.isEmpty(), qPrintable(failure));
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
        const QStringList aside = copiesAside(dir.path(), history);
        // An unreadable file is moved aside, since it could not be copied.
        QCOMPARE(aside.size(), !readable && folderWritable ? 1 : 0);
        if (!aside.isEmpty())
            QCOMPARE(readFile(dir.filePath(aside.first())), original);
        else if (inPlace)
            QCOMPARE(Opened(history, dir.path()).count(), 4);
        else if (!fileSize)
            QCOMPARE(readFile(path), original);
        if (aside.isEmpty())
            QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                     QStringList{fileOf(history)});
    }

    void strayTemporaryFilesAreRemoved()
    {
        QTemporaryDir dir;
        // What a killed save leaves: the file's name, a dot and six letters of
        // both cases; six letters in one case may be the user's own word.
        QStringList kept = {"palettes.json", "palettes.json.AbCdE1", "palettes.json.AbCdEfg",
                            "palettes.json.BACKUP", "other.json.AbCdEf"};
        for (const QString &name : kept + QStringList{"palettes.json.AbCdEf", "palettes.json.zzzzzZ"})
            writeFile(dir.filePath(name), "[]");
        StdoutCapture out;
        QCOMPARE(PaletteStorage(dir.path()).palettes().size(), 0);
        QCOMPARE(out.text(), QByteArray());
        kept.sort();
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files, QDir::Name), kept);
    }

    void defaultFolderIsTheUserDataFolder()
    {
        QStandardPaths::setTestModeEnabled(true);
        const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
            + QStringLiteral("/Tintwright");
        QDir(folder).removeRecursively();
        QCOMPARE(HistoryStorage().filePath(), folder + QStringLiteral("/history.json"));
        QCOMPARE(PaletteStorage().filePath(), folder + QStringLiteral("/palettes.json"));
        QVERIFY(QFileInfo(folder).isDir()); // made at construction
        QDir(folder).removeRecursively();
    }
};

QTEST_GUILESS_MAIN(TestStores)
#include "tst_stores.moc"
