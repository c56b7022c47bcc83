// Both file-backed stores against the files a user's disk can hold. Whatever
// the file, the store loads (empty where it must), prints its one line, keeps
// a ".corrupt-" copy of what it refuses, stays usable, and never replaces a
// file it could not read without that copy.
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"
#include "support/StdoutCapture.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <csignal>
#include <functional>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

enum class Store { History, Palettes };

QString nameOf(Store store)
{
    return store == Store::History ? QStringLiteral("history") : QStringLiteral("palettes");
}

QString fileOf(Store store)
{
    return nameOf(store) + QStringLiteral(".json");
}

// A well-formed file of `count` records (palettes of one color each).
QByteArray validFile(Store store, int count)
{
    QList<ColorItem> colors;
    QList<Palette> palettes;
    for (int n = 0; n < count; ++n) {
        const ColorItem item{QUuid(uint(n), 0x1f2e, 0x4d3c, 0x8b, 0xa9, 1, 2, 3, 4, 5, 6),
                             QStringLiteral("Sample %1").arg(n),
                             0.25,
                             0.5,
                             0.75,
                             1.0,
                             QDateTime(QDate(2025, 3, 14), QTime(9, 26, 53), Qt::UTC)};
        colors.append(item);
        palettes.append({item.id, item.name, {item}, item.dateAdded});
    }
    return *(store == Store::History ? RecordCoding::encodeColors(colors)
                                     : RecordCoding::encodePalettes(palettes))
                .data;
}

// Either store, opened on a folder: how many records it holds, and one more.
struct Opened
{
    Opened(Store store, const QString &folder)
    {
        if (store == Store::History)
            history = std::make_unique<HistoryStorage>(folder);
        else
            palettes = std::make_unique<PaletteStorage>(folder);
    }
    qsizetype count() const { return history ? history->colors().size() : palettes->palettes().size(); }
    void addOne()
    {
        // Far enough apart that none replaces another as a near duplicate.
        if (history)
            history->addColor(ColorItem::create(QStringLiteral("added"), (added++ % 50) * 0.02, 0.1, 0.1));
        else
            palettes->createPalette(QStringLiteral("added"));
    }
    std::unique_ptr<HistoryStorage> history;
    std::unique_ptr<PaletteStorage> palettes;
    int added = 0;
};

QStringList copiesAside(const QString &folder, Store store)
{
    return QDir(folder).entryList({fileOf(store) + QStringLiteral(".corrupt-*")},
                                  QDir::AllEntries | QDir::System | QDir::Hidden);
}

// Exactly one line, "Failed to <verb> <store>: " and why.
bool isReport(const QByteArray &printed, const char *verb, Store store)
{
    const QByteArray start = "Failed to " + QByteArray(verb) + ' ' + nameOf(store).toUtf8() + ": ";
    return printed.startsWith(start) && printed.size() > start.size() + 1 && printed.count('\n') == 1
        && printed.endsWith('\n');
}

// Runs `body` in a forked child, as "nobody" when the test runs as root
// (root ignores permissions) and with a file-size limit that fails writes as
// a full disk does. Returns what the child found wrong, empty when nothing.
QString inChild(rlim_t fileSize, const std::function<QString()> &body)
{
    int channel[2];
    if (::pipe(channel) != 0)
        return QStringLiteral("no pipe");
    std::fflush(stdout);
    const pid_t pid = ::fork();
    if (pid == 0) {
        QString result = QStringLiteral("cannot drop privileges");
        if (::geteuid() != 0
            || (::setgroups(0, nullptr) == 0 && ::setgid(65534) == 0 && ::setuid(65534) == 0)) {
            std::signal(SIGXFSZ, SIG_IGN); // a failed write, not a dead process
            const rlimit limit{fileSize, fileSize};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            result = body();
        }
        const QByteArray bytes = result.toUtf8();
        [[maybe_unused]] const ssize_t n = ::write(channel[1], bytes.constData(), size_t(bytes.size()));
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
    return WIFSIGNALED(status) ? QStringLiteral("child died of signal %1").arg(WTERMSIG(status))
                               : QString::fromUtf8(report);
}

#define CHILD_CHECK(condition, what)                                                                         \
    if (!(condition))                                                                                        \
    return QStringLiteral("line %1: %2: %3").arg(__LINE__).arg(QStringLiteral(#condition), what)

} // namespace

Q_DECLARE_METATYPE(Store)

class TestStorageFiles : public QObject
{
    Q_OBJECT

private slots:
    void loading_data();
    void loading();
    void deniedOrFullDisk_data();
    void deniedOrFullDisk();
    void strayTemporaryFilesAreRemoved();
    void defaultFolderIsTheUserDataFolder();
};

void TestStorageFiles::loading_data()
{
    QTest::addColumn<Store>("store");
    QTest::addColumn<QByteArray>("content"); // "<...>": something other than a file of that content
    QTest::addColumn<int>("count");          // -1: refused
    for (const Store store : {Store::History, Store::Palettes}) {
        const QByteArray valid = validFile(store, 3);
        const auto row = [&](const char *what, const QByteArray &content, int count) {
            QTest::addRow("%s: %s", qPrintable(nameOf(store)), what) << store << content << count;
        };
        const auto swapped = [&](const char *what, const char *from, const char *to) {
            QVERIFY(valid.contains(from));
            row(what, QByteArray(valid).replace(from, to), -1);
        };
        row("empty array", "[]", 0);
        row("empty file", "", -1);
        row("cut after a comma", valid.left(valid.lastIndexOf(',') + 1), -1);
        row("object at the top", "{\"colors\": []}", -1);
        row("trailing garbage", valid + "\n}{", -1);
        row("NUL byte inside", QByteArray(valid).insert(40, '\0'), -1);
        row("nested 100000 deep", QByteArray(100000, '[') + QByteArray(100000, ']'), -1);
        swapped("name as number", "\"name\" : \"Sample 1\"", "\"name\" : 1");
        swapped("number beyond double", "\"red\" : 0.25", "\"red\" : 1e400");
        swapped("bare NaN", "\"red\" : 0.25", "\"red\" : NaN");
        swapped("date with offset", "09:26:53Z", "09:26:53+01:00");
        row("compact, on one line", QByteArray(valid).replace('\n', ' ').replace("  ", ""), 3);
        row("components far out of range", QByteArray(valid).replace("0.25", "-1e308"), 3);
        for (const char *other :
             {"<folder>", "<symlink to a folder>", "<symlink to /dev/zero>", "<symlink to notes>", "<fifo>"})
            row(other, other, -1);
        row("<symlink to a file>", "<symlink to a file>", 2);
        // A link to nothing is a file not made yet: the first save writes its target.
        row("<dangling symlink>", "<dangling symlink>", 0);
    }
}

void TestStorageFiles::loading()
{
    QFETCH(Store, store);
    QFETCH(QByteArray, content);
    QFETCH(int, count);
    QTemporaryDir dir, elsewhere;
    const QString path = dir.filePath(fileOf(store));
    const QString real = elsewhere.filePath(QStringLiteral("synced.json"));
    const bool regular = !content.startsWith('<');
    if (content == "<folder>")
        QVERIFY(QDir().mkpath(path + QStringLiteral("/inside")));
    else if (content == "<fifo>")
        QVERIFY(::mkfifo(QFile::encodeName(path).constData(), 0600) == 0);
    else if (!regular) {
        const QMap<QByteArray, QString> targets = {
            {"<dangling symlink>", dir.filePath(QStringLiteral("gone.json"))},
            {"<symlink to a folder>", elsewhere.path()},
            {"<symlink to /dev/zero>", QStringLiteral("/dev/zero")}};
        if (content == "<symlink to notes>")
            writeFile(real, "kept");
        else if (content == "<symlink to a file>")
            writeFile(real, validFile(store, count));
        QVERIFY(QFile::link(targets.value(content, real), path));
    } else
        writeFile(path, content);

    // Must neither block (a fifo with no writer) nor read without end.
    StdoutCapture out;
    Opened opened(store, dir.path());
    const QByteArray printed = out.text();
    const QStringList copies = copiesAside(dir.path(), store);
    QCOMPARE(opened.count(), qMax(count, 0));
    QCOMPARE(copies.size(), count < 0 ? 1 : 0);
    if (count >= 0) {
        QCOMPARE(printed, QByteArray());
    } else {
        QVERIFY2(isReport(printed, "load", store), printed.left(300).constData());
        QVERIFY(QRegularExpression(QStringLiteral("\\.corrupt-\\d{8}T\\d{6}Z$"))
                    .match(copies.first())
                    .hasMatch());
    }
    opened.addOne();
    QCOMPARE(out.text(), printed); // saving says nothing
    QCOMPARE(Opened(store, dir.path()).count(), qMax(count, 0) + 1);
    if (count < 0 && regular)
        QVERIFY(readFile(dir.filePath(copies.first())) == content);
    // A file kept elsewhere through a link is updated there, the link kept.
    QCOMPARE(QFileInfo(path).isSymLink(),
             content == "<symlink to a file>" || content == "<dangling symlink>");
    // A link to something that is no data file is moved aside itself, never written through.
    if (content == "<symlink to notes>")
        QCOMPARE(readFile(real), QByteArray("kept"));
    QVERIFY(QFileInfo(path).isFile());
}

void TestStorageFiles::deniedOrFullDisk_data()
{
    QTest::addColumn<Store>("store");
    QTest::addColumn<bool>("fileReadable");
    QTest::addColumn<bool>("fileWritable");
    QTest::addColumn<bool>("folderWritable");
    QTest::addColumn<int>("fileSize");
    for (const Store store : {Store::History, Store::Palettes}) {
        const QByteArray name = nameOf(store).toUtf8();
        const char *s = name.constData();
        QTest::addRow("%s: unreadable file", s) << store << false << false << true << 0;
        QTest::addRow("%s: unreadable file, read-only folder", s) << store << false << false << false << 0;
        QTest::addRow("%s: read-only file", s) << store << true << false << true << 0;
        QTest::addRow("%s: read-only folder", s) << store << true << true << false << 0;
        QTest::addRow("%s: full disk", s) << store << true << true << true << 3000;
    }
}

void TestStorageFiles::deniedOrFullDisk()
{
    QFETCH(Store, store);
    QFETCH(bool, fileReadable);
    QFETCH(bool, fileWritable);
    QFETCH(bool, folderWritable);
    QFETCH(int, fileSize);
    QTemporaryDir dir;
    const QString path = dir.filePath(fileOf(store));
    const QByteArray original = validFile(store, 2);
    writeFile(path, original);
    for (const QString &own : {dir.path(), path})
        QVERIFY(::geteuid() != 0 || ::chown(QFile::encodeName(own).constData(), 65534, 65534) == 0);
    QVERIFY(QFile::setPermissions(path,
                                  QFileDevice::Permissions(fileReadable ? QFile::ReadOwner : 0)
                                      | (fileWritable ? QFile::WriteOwner : QFileDevice::Permissions())));
    const QFileDevice::Permissions open = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    QVERIFY(QFile::setPermissions(dir.path(), folderWritable ? open : open & ~QFile::WriteOwner));

    // A folder that takes no new file still lets a writable file be saved in place.
    const bool inPlace = fileReadable && fileWritable && !folderWritable;
    const bool savable = (!fileReadable && folderWritable) || inPlace;
    const QString failure = inChild(fileSize ? rlim_t(fileSize) : RLIM_INFINITY, [&]() -> QString {
        StdoutCapture out;
        Opened opened(store, dir.path());
        const QByteArray loaded = out.text();
        CHILD_CHECK(opened.count() == (fileReadable ? 2 : 0), QString::number(opened.count()));
        CHILD_CHECK(fileReadable ? loaded.isEmpty() : isReport(loaded, "load", store),
                    QString::fromUtf8(loaded));
        // Saves that fail change nothing on disk; the store goes on in memory.
        QByteArray lastGood = readFile(path);
        int failed = 0;
        for (int n = 1; n <= (fileSize ? 40 : 2); ++n) {
            const qsizetype before = out.text().size();
            opened.addOne();
            const QByteArray printed = out.text().mid(before);
            CHILD_CHECK(opened.count() == qMin((fileReadable ? 2 : 0) + n, store == Store::History ? 20 : 99),
                        QString::number(opened.count()));
            if (printed.isEmpty()) {
                CHILD_CHECK(Opened(store, dir.path()).count() == opened.count(), QString::number(n));
                lastGood = readFile(path);
            } else {
                ++failed;
                CHILD_CHECK(isReport(printed, "save", store), QString::fromUtf8(printed));
                CHILD_CHECK(readFile(path) == lastGood, QStringLiteral("changed by a failed save"));
            }
        }
        CHILD_CHECK(savable ? failed == 0 : failed > 0,
                    QString::number(failed) + QStringLiteral(" saves failed"));
        return {};
    });
    QVERIFY(QFile::setPermissions(dir.path(), open));
    QVERIFY2(failure.isEmpty(), qPrintable(failure));
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
    const QStringList aside = copiesAside(dir.path(), store);
    if (!fileReadable && folderWritable) {
        // Moved aside, since it could not be copied; the saves went on.
        QCOMPARE(aside.size(), 1);
        QCOMPARE(readFile(dir.filePath(aside.first())), original);
        return;
    }
    QVERIFY(aside.isEmpty());
    if (inPlace)
        QCOMPARE(Opened(store, dir.path()).count(), 4);
    else if (!fileSize)
        QCOMPARE(readFile(path), original);
    QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{fileOf(store)});
}

void TestStorageFiles::strayTemporaryFilesAreRemoved()
{
    QTemporaryDir dir;
    // What a killed save leaves: the file's name, a dot and six letters of
    // both cases; six letters in one case may be the user's own word.
    QStringList kept = {"palettes.json",        "palettes.json.AbCdE1", "palettes.json.AbCdEfg",
                        "palettes.json.backup", "palettes.json.BACKUP", "other.json.AbCdEf"};
    for (const QString &name : kept + QStringList{"palettes.json.AbCdEf", "palettes.json.zzzzzZ"})
        writeFile(dir.filePath(name), "[");
    writeFile(dir.filePath(QStringLiteral("palettes.json")), "[]");
    StdoutCapture out;
    QCOMPARE(PaletteStorage(dir.path()).palettes().size(), 0);
    QCOMPARE(out.text(), QByteArray());
    kept.sort();
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files, QDir::Name), kept);
}

void TestStorageFiles::defaultFolderIsTheUserDataFolder()
{
    QStandardPaths::setTestModeEnabled(true);
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Tintwright");
    QDir(folder).removeRecursively();
    QCOMPARE(HistoryStorage().filePath(), folder + QStringLiteral("/history.json"));
    QCOMPARE(PaletteStorage().filePath(), folder + QStringLiteral("/palettes.json"));
    QVERIFY(QFileInfo(folder).isDir()); // made at construction
    QDir(folder).removeRecursively();
}

QTEST_GUILESS_MAIN(TestStorageFiles)
#include "tst_storagefiles.moc"
