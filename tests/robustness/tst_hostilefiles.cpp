// Both stores against files a user's disk can hold: damaged, odd, huge, of
// the wrong kind, unreadable, unwritable, on a full disk. Whatever the file,
// the store loads (empty where it must), prints its one line, keeps a
// ".corrupt-" copy of anything it refuses, stays usable, and never replaces
// a file it could not read without that copy.
#include "HostileStore.h"

#include "storage/PaletteStorage.h"
#include "support/StdoutCapture.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <limits>

#include <csignal>
#include <grp.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using Kind = HostileStore::Kind;
Q_DECLARE_METATYPE(HostileStore::Kind)

namespace {

constexpr uid_t nobody = 65534;

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList asideCopies(const QString &folder, Kind kind)
{
    return QDir(folder).entryList({HostileStore::fileName(kind) + QStringLiteral(".corrupt-*")},
                                  QDir::AllEntries | QDir::System | QDir::Hidden);
}

// Checks made in a forked child report back as text; empty means passed.
#define CHILD_CHECK(condition, what)                                                                         \
    do {                                                                                                     \
        if (!(condition))                                                                                    \
            return QStringLiteral("%1 (line %2): %3")                                                        \
                .arg(QStringLiteral(#condition))                                                             \
                .arg(__LINE__)                                                                               \
                .arg(what);                                                                                  \
    } while (false)

struct ChildLimits
{
    bool unprivileged = false;
    rlim_t fileSize = RLIM_INFINITY;
};

// Runs `body` in a forked child: as "nobody" when asked and the test runs
// as root (root reads and writes whatever the permissions say), and with a
// file-size limit that makes writes fail as on a full disk.
QString inChild(const ChildLimits &limits, const std::function<QString()> &body)
{
    int channel[2];
    if (::pipe(channel) != 0)
        return QStringLiteral("no pipe");
    std::fflush(stdout);
    const pid_t pid = ::fork();
    if (pid < 0)
        return QStringLiteral("no fork");
    if (pid == 0) {
        ::close(channel[0]);
        QString result;
        if (limits.unprivileged && ::geteuid() == 0
            && (::setgroups(0, nullptr) != 0 || ::setgid(nobody) != 0 || ::setuid(nobody) != 0)) {
            result = QStringLiteral("cannot drop privileges");
        } else {
            if (limits.fileSize != RLIM_INFINITY) {
                std::signal(SIGXFSZ, SIG_IGN); // a failed write, not a dead process
                const rlimit limit{limits.fileSize, limits.fileSize};
                ::setrlimit(RLIMIT_FSIZE, &limit);
            }
            result = body();
        }
        const QByteArray bytes = result.toUtf8();
        [[maybe_unused]] const ssize_t written = ::write(channel[1], bytes.constData(), size_t(bytes.size()));
        ::_exit(0);
    }
    ::close(channel[1]);
    QByteArray report;
    char buffer[4096];
    for (ssize_t n; (n = ::read(channel[0], buffer, sizeof buffer)) > 0;)
        report.append(buffer, n);
    ::close(channel[0]);
    int status = 0;
    ::waitpid(pid, &status, 0);
    if (WIFSIGNALED(status))
        return QStringLiteral("the child died of signal %1").arg(WTERMSIG(status));
    return QString::fromUtf8(report);
}

// A folder the unprivileged child can use as its own.
void handToChild(const QString &path)
{
    if (::geteuid() == 0)
        QVERIFY(::chown(QFile::encodeName(path).constData(), nobody, nobody) == 0);
}

// One printed line that starts with `message` and says why.
bool isOneReportLine(const QByteArray &printed, const QByteArray &message)
{
    return printed.startsWith(message) && printed.size() > message.size() + 1 && printed.count('\n') == 1
        && printed.endsWith('\n');
}

QByteArray nested(int depth)
{
    return QByteArray(depth, '[') + QByteArray(depth, ']');
}

void addStoreRows(const char *name, const std::function<QByteArray(Kind)> &content)
{
    for (const Kind kind : {Kind::History, Kind::Palettes})
        QTest::addRow("%s: %s", qPrintable(HostileStore::name(kind)), name) << kind << content(kind);
}

} // namespace

class TestHostileFiles : public QObject
{
    Q_OBJECT

private slots:
    void refusedFileIsKeptAsideAndStoreStaysUsable_data();
    void refusedFileIsKeptAsideAndStoreStaysUsable();
    void oddButValidFileLoads_data();
    void oddButValidFileLoads();
    void somethingElseWhereTheFileShouldBe_data();
    void somethingElseWhereTheFileShouldBe();
    void symlinkToAFileIsFollowed_data();
    void symlinkToAFileIsFollowed();
    void unreadableFileIsMovedAside_data();
    void unreadableFileIsMovedAside();
    void unreadableFileInReadOnlyFolderIsNeverReplaced_data();
    void unreadableFileInReadOnlyFolderIsNeverReplaced();
    void readOnlyFolderOrFileKeepsTheFile_data();
    void readOnlyFolderOrFileKeepsTheFile();
    void fullDiskKeepsTheLastGoodFile_data();
    void fullDiskKeepsTheLastGoodFile();
    void saveFailingMidwayKeepsTheOldFile_data();
    void saveFailingMidwayKeepsTheOldFile();
};

void TestHostileFiles::refusedFileIsKeptAsideAndStoreStaysUsable_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<QByteArray>("content");
    const auto valid = [](Kind kind) { return HostileStore::validFile(kind, 3); };
    const auto swapped = [valid](const char *from, const char *to) {
        return [=](Kind kind) { return valid(kind).replace(from, to); };
    };
    addStoreRows("empty file", [](Kind) { return QByteArray(); });
    addStoreRows("only blanks", [](Kind) { return QByteArray(" \n\t "); });
    addStoreRows("truncated in the middle", [valid](Kind kind) {
        const QByteArray v = valid(kind);
        return v.left(v.size() / 2);
    });
    addStoreRows("last byte missing", [valid](Kind kind) { return valid(kind).chopped(1); });
    addStoreRows("cut after a comma", [valid](Kind kind) {
        const QByteArray v = valid(kind);
        return v.left(v.lastIndexOf(',') + 1);
    });
    addStoreRows("object at the top", [](Kind) { return QByteArray("{\"colors\": []}"); });
    addStoreRows("null", [](Kind) { return QByteArray("null"); });
    addStoreRows("a string", [](Kind) { return QByteArray("\"[]\""); });
    addStoreRows("name as number", swapped("\"name\" : \"Sample 1\"", "\"name\" : 1"));
    addStoreRows("component as text", swapped("\"red\" : 0.25", "\"red\" : \"0.25\""));
    addStoreRows("component as null", swapped("\"green\" : 0.5", "\"green\" : null"));
    addStoreRows("component as array", swapped("\"blue\" : 0.75", "\"blue\" : [0.75]"));
    addStoreRows("id as number", swapped("\"id\" : \"", "\"id\" : 7, \"x\" : \""));
    addStoreRows("number beyond double", swapped("\"red\" : 0.25", "\"red\" : 1e400"));
    addStoreRows("negative number beyond double", swapped("\"alpha\" : 1", "\"alpha\" : -1e99999"));
    addStoreRows("bare NaN", swapped("\"red\" : 0.25", "\"red\" : NaN"));
    addStoreRows("bare Infinity", swapped("\"red\" : 0.25", "\"red\" : Infinity"));
    addStoreRows("bare -Infinity", swapped("\"red\" : 0.25", "\"red\" : -Infinity"));
    addStoreRows("NaN as text", swapped("\"red\" : 0.25", "\"red\" : \"NaN\""));
    addStoreRows("hex number", swapped("\"red\" : 0.25", "\"red\" : 0x10"));
    addStoreRows("date with fraction", swapped("09:26:53Z", "09:26:53.250Z"));
    addStoreRows("date that does not exist", swapped("2025-03-14T", "2025-02-30T"));
    addStoreRows("date with offset", swapped("09:26:53Z", "09:26:53+01:00"));
    addStoreRows("uuid without hyphens", swapped("-1F2E-", "1F2E"));
    addStoreRows("missing alpha", swapped("\"alpha\" : 1,", ""));
    addStoreRows("NUL byte inside", [valid](Kind kind) { return valid(kind).insert(40, '\0'); });
    addStoreRows("nested 100000 deep", [](Kind) { return nested(100000); });
    addStoreRows("nested 2000 deep inside a record",
                 swapped("\"red\" : 0.25", QByteArray("\"red\" : " + nested(2000)).constData()));
    addStoreRows("trailing garbage", [valid](Kind kind) { return valid(kind) + "\n}{"; });
    addStoreRows("two arrays", [valid](Kind kind) { return valid(kind) + valid(kind); });
    addStoreRows("50 MB with garbage at the end", [valid](Kind kind) {
        QByteArray big = valid(kind);
        big.chop(1); // the closing bracket
        big += ",\n";
        big += QByteArray(50 * 1024 * 1024, ' ');
        return big + "\x01";
    });
    addStoreRows("UTF-16 with BOM", [valid](Kind kind) {
        const QString text = QString::fromUtf8(valid(kind));
        return QByteArray("\xff\xfe")
            + QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    });
}

void TestHostileFiles::refusedFileIsKeptAsideAndStoreStaysUsable()
{
    QFETCH(Kind, kind);
    QFETCH(QByteArray, content);
    QTemporaryDir dir;
    const QString path = dir.filePath(HostileStore::fileName(kind));
    writeFile(path, content);

    StdoutCapture out;
    HostileStore store(kind, dir.path());
    QCOMPARE(store.count(), 0);
    const QByteArray printed = out.text();
    QVERIFY2(isOneReportLine(printed, HostileStore::loadMessage(kind)), printed.left(300).constData());
    const QStringList copies = asideCopies(dir.path(), kind);
    QCOMPARE(copies.size(), 1);
    QVERIFY(readFile(dir.filePath(copies.first())) == content);

    store.addOne();
    QCOMPARE(store.count(), 1);
    QCOMPARE(out.text(), printed); // saving says nothing
    QCOMPARE(HostileStore(kind, dir.path()).count(), 1);
    QVERIFY(readFile(dir.filePath(copies.first())) == content);
}

void TestHostileFiles::oddButValidFileLoads_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("count");
    const auto valid = [](Kind kind) { return HostileStore::validFile(kind, 3); };
    for (const Kind kind : {Kind::History, Kind::Palettes}) {
        const char *store = kind == Kind::History ? "history" : "palettes";
        QTest::addRow("%s: unknown keys", store)
            << kind << valid(kind).replace("\"name\"", "\"extra\" : {\"a\" : [1, 2]}, \"name\"") << 3;
        QTest::addRow("%s: compact, on one line", store)
            << kind << valid(kind).replace('\n', ' ').replace("  ", "") << 3;
        QTest::addRow("%s: components far out of range", store)
            << kind
            << valid(kind)
                   .replace("\"red\" : 0.25", "\"red\" : 123456789012345678901234567890")
                   .replace("\"green\" : 0.5", "\"green\" : -1e308")
            << 3;
        QTest::addRow("%s: subnormal component", store)
            << kind << valid(kind).replace("\"blue\" : 0.75", "\"blue\" : 4.9e-324") << 3;
        QTest::addRow("%s: names with escapes", store)
            << kind << valid(kind).replace("\"Sample 1\"", "\"\\u0000\\u202e\\ud83c\\udfa8\\ud800 \\\"\\\\\"")
            << 3;
        QTest::addRow("%s: lower-case uuid", store) << kind << valid(kind).replace("1F2E", "1f2e") << 3;
        QTest::addRow("%s: 50 MB of records", store)
            << kind << HostileStore::validFile(kind, kind == Kind::History ? 170000 : 110000)
            << (kind == Kind::History ? 170000 : 110000);
    }
}

void TestHostileFiles::oddButValidFileLoads()
{
    QFETCH(Kind, kind);
    QFETCH(QByteArray, content);
    QFETCH(int, count);
    QTemporaryDir dir;
    writeFile(dir.filePath(HostileStore::fileName(kind)), content);

    StdoutCapture out;
    HostileStore store(kind, dir.path());
    QCOMPARE(store.count(), count);
    QCOMPARE(out.text(), QByteArray());
    QVERIFY(asideCopies(dir.path(), kind).isEmpty());
    store.addOne();
    QCOMPARE(out.text(), QByteArray());
}

void TestHostileFiles::somethingElseWhereTheFileShouldBe_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<QString>("what");
    for (const Kind kind : {Kind::History, Kind::Palettes}) {
        for (const char *what : {"folder", "dangling symlink", "symlink loop", "symlink to a folder",
                                 "symlink to /dev/zero", "symlink to another file", "fifo"})
            QTest::addRow("%s: %s", qPrintable(HostileStore::name(kind)), what)
                << kind << QString::fromLatin1(what);
    }
}

void TestHostileFiles::somethingElseWhereTheFileShouldBe()
{
    QFETCH(Kind, kind);
    QFETCH(QString, what);
    QTemporaryDir dir;
    const QString path = dir.filePath(HostileStore::fileName(kind));
    const QByteArray target = QFile::encodeName(path);
    if (what == QLatin1String("folder")) {
        QVERIFY(QDir().mkpath(path));
        writeFile(path + QStringLiteral("/inside.txt"), "kept");
    } else if (what == QLatin1String("dangling symlink")) {
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("gone.json")), path));
    } else if (what == QLatin1String("symlink loop")) {
        QVERIFY(::symlink(target.constData(), target.constData()) == 0);
    } else if (what == QLatin1String("symlink to a folder")) {
        QVERIFY(QFile::link(dir.path(), path));
    } else if (what == QLatin1String("symlink to /dev/zero")) {
        QVERIFY(QFile::link(QStringLiteral("/dev/zero"), path));
    } else if (what == QLatin1String("symlink to another file")) {
        writeFile(dir.filePath(QStringLiteral("notes.txt")), "kept");
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("notes.txt")), path));
    } else if (what == QLatin1String("fifo")) {
        QVERIFY(::mkfifo(target.constData(), 0600) == 0);
    }

    // Must neither block (a fifo with no writer) nor read without end.
    StdoutCapture out;
    HostileStore store(kind, dir.path());
    QCOMPARE(store.count(), 0);
    const QByteArray printed = out.text();
    // A link to nothing is a file not made yet: silent, and saved through.
    const bool missing = what == QLatin1String("dangling symlink");
    if (missing) {
        QCOMPARE(printed, QByteArray());
        QVERIFY(asideCopies(dir.path(), kind).isEmpty());
    } else {
        QVERIFY2(isOneReportLine(printed, HostileStore::loadMessage(kind)), printed.constData());
        const QStringList aside = asideCopies(dir.path(), kind);
        QCOMPARE(aside.size(), 1);
        if (what == QLatin1String("folder"))
            QCOMPARE(readFile(dir.filePath(aside.first() + QStringLiteral("/inside.txt"))),
                     QByteArray("kept"));
    }

    store.addOne();
    QCOMPARE(out.text(), printed);
    QVERIFY(QFileInfo(path).isFile());
    QCOMPARE(QFileInfo(path).isSymLink(), missing);
    QCOMPARE(HostileStore(kind, dir.path()).count(), 1);
    QVERIFY(QFileInfo(QStringLiteral("/dev/zero")).exists());
    if (what == QLatin1String("symlink to another file"))
        QCOMPARE(readFile(dir.filePath(QStringLiteral("notes.txt"))), QByteArray("kept"));
}

void TestHostileFiles::symlinkToAFileIsFollowed_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::newRow("history") << Kind::History;
    QTest::newRow("palettes") << Kind::Palettes;
}

void TestHostileFiles::symlinkToAFileIsFollowed()
{
    QFETCH(Kind, kind);
    QTemporaryDir dir, elsewhere;
    const QString real = elsewhere.filePath(QStringLiteral("synced.json"));
    writeFile(real, HostileStore::validFile(kind, 2));
    const QString link = dir.filePath(HostileStore::fileName(kind));
    QVERIFY(QFile::link(real, link));

    StdoutCapture out;
    {
        HostileStore store(kind, dir.path());
        QCOMPARE(store.count(), 2);
        store.addOne();
    }
    QCOMPARE(out.text(), QByteArray());
    QCOMPARE(HostileStore(kind, dir.path()).count(), 3);
    // A library kept elsewhere through a link is updated there.
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(HostileStore(kind, elsewhere.path()).count(), 0); // other name there
    writeFile(elsewhere.filePath(HostileStore::fileName(kind)), readFile(real));
    QCOMPARE(HostileStore(kind, elsewhere.path()).count(), 3);
}

void TestHostileFiles::unreadableFileIsMovedAside_data()
{
    symlinkToAFileIsFollowed_data();
}

void TestHostileFiles::unreadableFileIsMovedAside()
{
    QFETCH(Kind, kind);
    QTemporaryDir dir;
    handToChild(dir.path());
    const QString path = dir.filePath(HostileStore::fileName(kind));
    const QByteArray original = HostileStore::validFile(kind, 2);
    writeFile(path, original);
    QVERIFY(QFile::setPermissions(path, {}));

    const QString failure = inChild({true}, [&]() -> QString {
        StdoutCapture out;
        HostileStore store(kind, dir.path());
        CHILD_CHECK(store.count() == 0, QString::number(store.count()));
        const QByteArray printed = out.text();
        CHILD_CHECK(isOneReportLine(printed, HostileStore::loadMessage(kind)), QString::fromUtf8(printed));
        store.addOne();
        CHILD_CHECK(out.text() == printed, QString::fromUtf8(out.text()));
        CHILD_CHECK(HostileStore(kind, dir.path()).count() == 1, QString());
        return {};
    });
    QVERIFY2(failure.isEmpty(), qPrintable(failure));
    const QStringList aside = asideCopies(dir.path(), kind);
    QCOMPARE(aside.size(), 1);
    QCOMPARE(readFile(dir.filePath(aside.first())), original); // moved, not copied
}

void TestHostileFiles::unreadableFileInReadOnlyFolderIsNeverReplaced_data()
{
    symlinkToAFileIsFollowed_data();
}

void TestHostileFiles::unreadableFileInReadOnlyFolderIsNeverReplaced()
{
    QFETCH(Kind, kind);
    QTemporaryDir dir;
    handToChild(dir.path());
    const QString path = dir.filePath(HostileStore::fileName(kind));
    const QByteArray original = HostileStore::validFile(kind, 2);
    writeFile(path, original);
    QVERIFY(QFile::setPermissions(path, {}));
    QVERIFY(QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::ExeOwner));

    const QString failure = inChild({true}, [&]() -> QString {
        StdoutCapture out;
        HostileStore store(kind, dir.path());
        CHILD_CHECK(store.count() == 0, QString::number(store.count()));
        const QByteArray loaded = out.text();
        CHILD_CHECK(isOneReportLine(loaded, HostileStore::loadMessage(kind)), QString::fromUtf8(loaded));
        store.addOne(); // kept in memory, but the file it could not read stays
        CHILD_CHECK(store.count() == 1, QString());
        const QByteArray saved = out.text().mid(loaded.size());
        CHILD_CHECK(isOneReportLine(saved, HostileStore::saveMessage(kind)), QString::fromUtf8(saved));
        return {};
    });
    QVERIFY(QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY2(failure.isEmpty(), qPrintable(failure));
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
    QCOMPARE(readFile(path), original);
    QVERIFY(asideCopies(dir.path(), kind).isEmpty());
}

void TestHostileFiles::readOnlyFolderOrFileKeepsTheFile_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<bool>("folderReadOnly");
    for (const Kind kind : {Kind::History, Kind::Palettes}) {
        QTest::addRow("%s: read-only folder", qPrintable(HostileStore::name(kind))) << kind << true;
        QTest::addRow("%s: read-only file", qPrintable(HostileStore::name(kind))) << kind << false;
    }
}

void TestHostileFiles::readOnlyFolderOrFileKeepsTheFile()
{
    QFETCH(Kind, kind);
    QFETCH(bool, folderReadOnly);
    QTemporaryDir dir;
    handToChild(dir.path());
    const QString path = dir.filePath(HostileStore::fileName(kind));
    const QByteArray original = HostileStore::validFile(kind, 2);
    writeFile(path, original);
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    if (folderReadOnly)
        QVERIFY(QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::ExeOwner));

    const QString failure = inChild({true}, [&]() -> QString {
        StdoutCapture out;
        HostileStore store(kind, dir.path());
        CHILD_CHECK(store.count() == 2, QString::number(store.count()));
        CHILD_CHECK(out.text().isEmpty(), QString::fromUtf8(out.text()));
        store.addOne();
        store.addOne();
        CHILD_CHECK(store.count() == 4, QString::number(store.count())); // usable in memory
        const QByteArray printed = out.text();
        CHILD_CHECK(printed.count('\n') == 2 && printed.startsWith(HostileStore::saveMessage(kind)),
                    QString::fromUtf8(printed));
        return {};
    });
    QVERIFY(QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY2(failure.isEmpty(), qPrintable(failure));
    QCOMPARE(readFile(path), original);
    QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{HostileStore::fileName(kind)});
}

void TestHostileFiles::fullDiskKeepsTheLastGoodFile_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<bool>("tmpfs");
    for (const Kind kind : {Kind::History, Kind::Palettes}) {
        QTest::addRow("%s: file size limit", qPrintable(HostileStore::name(kind))) << kind << false;
        QTest::addRow("%s: full tmpfs", qPrintable(HostileStore::name(kind))) << kind << true;
    }
}

void TestHostileFiles::fullDiskKeepsTheLastGoodFile()
{
    QFETCH(Kind, kind);
    QFETCH(bool, tmpfs);
    QTemporaryDir dir;
    QString folder = dir.path();
    bool mounted = false;
    if (tmpfs) {
        if (::geteuid() != 0)
            QSKIP("mounting a small tmpfs needs root; the file size limit row covers a full disk");
        mounted = ::mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0, "size=32k") == 0;
        if (!mounted)
            QSKIP("this system does not allow mounting a tmpfs; the file size limit row covers a full disk");
    }
    const auto unmount = qScopeGuard([&] {
        if (mounted)
            ::umount2(QFile::encodeName(folder).constData(), MNT_DETACH);
    });
    const QString path = folder + u'/' + HostileStore::fileName(kind);
    writeFile(path, HostileStore::validFile(kind, 1));
    if (tmpfs) {
        // Fill the disk, then free one page: room for a few saves only.
        QFile filler(folder + QStringLiteral("/filler"));
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (filler.write(QByteArray(1024, 'x')) == 1024) { }
        QVERIFY(filler.resize(std::max<qint64>(0, filler.size() - 4096)));
    }

    ChildLimits limits;
    if (!tmpfs)
        limits.fileSize = 3 * 1024;
    const QString failure = inChild(limits, [&]() -> QString {
        StdoutCapture out;
        HostileStore store(kind, folder);
        CHILD_CHECK(store.count() == 1, QString::number(store.count()));
        int failedSaves = 0;
        QByteArray lastGood = readFile(path);
        for (int n = 2; n <= 40; ++n) {
            const qsizetype printedBefore = out.text().size();
            store.addOne();
            CHILD_CHECK(store.count() == (kind == Kind::History ? std::min(n, 20) : n),
                        QString::number(store.count()));
            const QByteArray printed = out.text().mid(printedBefore);
            const QByteArray now = readFile(path);
            if (printed.isEmpty()) {
                const qsizetype reloaded = HostileStore(kind, folder).count();
                CHILD_CHECK(reloaded == store.count(),
                            QStringLiteral("step %1: %2 on disk, %3 in memory, %4 bytes, printed %5")
                                .arg(n)
                                .arg(reloaded)
                                .arg(store.count())
                                .arg(now.size())
                                .arg(QString::fromUtf8(out.text().mid(printedBefore))));
                lastGood = now;
            } else {
                ++failedSaves;
                CHILD_CHECK(isOneReportLine(printed, HostileStore::saveMessage(kind)),
                            QString::fromUtf8(printed));
                CHILD_CHECK(now == lastGood, QStringLiteral("file changed by a failed save at %1").arg(n));
            }
        }
        CHILD_CHECK(failedSaves > 0, QStringLiteral("the disk never filled up"));
        CHILD_CHECK(lastGood != HostileStore::validFile(kind, 1) || kind == Kind::History,
                    QStringLiteral("not one save fitted"));
        const QStringList stray =
            QDir(folder).entryList(QDir::Files).filter(QRegularExpression(QStringLiteral("json.")));
        CHILD_CHECK(stray.isEmpty(), stray.join(u' '));
        return {};
    });
    QVERIFY2(failure.isEmpty(), qPrintable(failure));
}

void TestHostileFiles::saveFailingMidwayKeepsTheOldFile_data()
{
    QTest::addColumn<bool>("diskFills");
    QTest::newRow("the disk fills up") << true;
    QTest::newRow("a value cannot be written") << false;
}

void TestHostileFiles::saveFailingMidwayKeepsTheOldFile()
{
    QFETCH(bool, diskFills);
    QTemporaryDir dir;
    const QString path = dir.filePath(HostileStore::fileName(Kind::Palettes));
    // Long enough that a save writes part of the file before the failure.
    const QByteArray original = HostileStore::validFile(Kind::Palettes, 1000);
    writeFile(path, original);

    ChildLimits limits;
    if (diskFills)
        limits.fileSize = rlim_t(original.size() / 2);
    const QString failure = inChild(limits, [&]() -> QString {
        StdoutCapture out;
        PaletteStorage storage(dir.path());
        const double red = diskFills ? 0.5 : std::numeric_limits<double>::quiet_NaN();
        storage.addColor(ColorItem::create(QStringLiteral("c"), red, 0.5, 0.5), storage.palettes().last().id);
        CHILD_CHECK(isOneReportLine(out.text(), HostileStore::saveMessage(Kind::Palettes)),
                    QString::fromUtf8(out.text()));
        return {};
    });
    QVERIFY2(failure.isEmpty(), qPrintable(failure));
    QCOMPARE(readFile(path), original);
    QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{HostileStore::fileName(Kind::Palettes)});
}

QTEST_GUILESS_MAIN(TestHostileFiles)
#include "tst_hostilefiles.moc"
