// The stores against other programs writing their files while they run: a
// sync tool replacing the file, a hand edit, a half-written file, conflict
// copies left beside it.
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

#include "model/RecordCoding.h"
#include "support/StdoutCapture.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <cstdio>

namespace {

enum class Write { AtomicRename, InPlace, InPlaceKeepingSizeAndTime };

// Writes the file as another program would.
void writeAsAnotherProgram(const QString &path, const QByteArray &bytes, Write how)
{
    const QString temporary = path + QStringLiteral(".syncing");
    const QDateTime before = QFileInfo(path).lastModified();
    writeFile(how == Write::AtomicRename ? temporary : path, bytes);
    if (how == Write::AtomicRename)
        QCOMPARE(std::rename(QFile::encodeName(temporary).constData(), QFile::encodeName(path).constData()),
                 0);
    QFile file(path);
    if (how == Write::InPlaceKeepingSizeAndTime)
        QVERIFY(file.open(QIODevice::ReadWrite)
                && file.setFileTime(before, QFileDevice::FileModificationTime));
}

// What another machine writes: the file as it is now, changed there.
QByteArray changedElsewhere(const QString &path, const std::function<void(PaletteStorage &)> &edit)
{
    QTemporaryDir elsewhere;
    QFile::copy(path, elsewhere.filePath(QStringLiteral("palettes.json")));
    edit(*std::make_unique<PaletteStorage>(elsewhere.path()));
    return readFile(elsewhere.filePath(QStringLiteral("palettes.json")));
}

// The palettes and their colors by id and name, without the dates.
QStringList summary(const QList<Palette> &palettes)
{
    QStringList lines;
    for (const Palette &palette : palettes) {
        lines.append(palette.id.toString() + palette.name);
        for (const ColorItem &item : palette.colors)
            lines.last() += item.id.toString();
    }
    return lines;
}

QStringList onDisk(const QString &path)
{
    return summary(RecordCoding::decodePalettes(readFile(path)).value.value_or(QList<Palette>()));
}

ColorItem someColor(int n)
{
    return ColorItem::create(QStringLiteral("c%1").arg(n), n / 100.0, 0.5, 0.25);
}

} // namespace

class TestExternalChanges : public QObject
{
    Q_OBJECT

private slots:
    void bothSidesChangesAreKept_data()
    {
        QTest::addColumn<Write>("how");
        QTest::addColumn<bool>("seenFirst"); // the program reloads before its own change
        QTest::newRow("atomic rename, unseen") << Write::AtomicRename << false;
        QTest::newRow("atomic rename, seen") << Write::AtomicRename << true;
        QTest::newRow("in place, unseen") << Write::InPlace << false;
        QTest::newRow("in place, same size and time") << Write::InPlaceKeepingSizeAndTime << false;
    }
    void bothSidesChangesAreKept()
    {
        QFETCH(Write, how);
        QFETCH(bool, seenFirst);
        QTemporaryDir dir;
        PaletteStorage storage(dir.path());
        const QString path = storage.filePath();
        const QUuid shared = storage.createPalette(QStringLiteral("shared")).id;
        const QUuid doomed = storage.createPalette(QStringLiteral("doomed")).id;
        const bool hidden =
            how == Write::InPlaceKeepingSizeAndTime; // the one change neither size nor time shows
        StdoutCapture out;
        Palette theirs;
        for (int round = 0; round < 2; ++round) {
            writeAsAnotherProgram(path,
                                  changedElsewhere(path,
                                                   [&](PaletteStorage &other) {
                                                       other.renamePalette(
                                                           shared, QStringLiteral("share%1").arg(round));
                                                       if (hidden)
                                                           return;
                                                       other.addColor(someColor(50 + round), shared);
                                                       theirs = other.createPalette(QStringLiteral("theirs"));
                                                       if (round == 1)
                                                           other.deletePalette(doomed);
                                                   }),
                                  how);
            if (seenFirst)
                QTRY_COMPARE(summary(storage.palettes()), onDisk(path));
            storage.addColor(someColor(round), shared);
            storage.addColor(someColor(90 + round), doomed); // deleted elsewhere: stays deleted
            QCOMPARE(summary(storage.palettes()), onDisk(path));
            QCOMPARE(storage.palette(shared)->name, QStringLiteral("share%1").arg(round));
            QCOMPARE(storage.palette(shared)->colors.size(), hidden ? round + 1 : 2 * round + 2);
            QCOMPARE(storage.palette(doomed).has_value(), round < 1 || hidden);
            QCOMPARE(storage.palettes().size(), hidden ? 2 : 3 + round - (round == 1));
            QVERIFY(hidden || storage.palette(theirs.id));
        }
        QCOMPARE(out.text(), QByteArray());
    }

    void halfWrittenFileIsWaitedFor_data()
    {
        QTest::addColumn<bool>("completed");
        QTest::newRow("completed a moment later") << true;
        QTest::newRow("left truncated") << false;
    }
    void halfWrittenFileIsWaitedFor()
    {
        QFETCH(bool, completed);
        QTemporaryDir dir;
        PaletteStorage storage(dir.path());
        const QString path = storage.filePath();
        storage.createPalette(QStringLiteral("mine"));
        const QList<Palette> mine = storage.palettes();
        const QByteArray theirs = changedElsewhere(
            path, [](PaletteStorage &other) { other.createPalette(QStringLiteral("theirs")); });
        StdoutCapture out;
        writeAsAnotherProgram(path, theirs.left(theirs.size() / 2), Write::InPlace);
        QTest::qWait(500);
        QCOMPARE(storage.palettes(), mine);
        const QStringList corrupt = {QStringLiteral("palettes.json.corrupt-*")};
        if (completed) {
            writeAsAnotherProgram(path, theirs, Write::InPlace);
            QTRY_COMPARE(storage.palettes().size(), 2);
            QTest::qWait(1000);
            QCOMPARE(out.text(), QByteArray());
            QCOMPARE(QDir(dir.path()).entryList(corrupt), QStringList());
            QCOMPARE(readFile(path), theirs);
            return;
        }
        QTRY_VERIFY(!out.text().isEmpty());
        QVERIFY(out.text().startsWith("Failed to load palettes: ") && out.text().count('\n') == 1);
        QCOMPARE(QDir(dir.path()).entryList(corrupt).size(), 1);
        // Neither the list shown nor the file loses the user's palettes.
        QCOMPARE(storage.palettes(), mine);
        QTRY_COMPARE(onDisk(path), summary(mine));
    }

    void conflictCopyIsMergedOnce_data()
    {
        QTest::addColumn<QString>("copyName");
        QTest::addColumn<bool>("whileRunning");
        QTest::newRow("syncthing, at start")
            << "palettes.sync-conflict-20250102-101010-ABCDEFG.json" << false;
        QTest::newRow("dropbox, while running") << "palettes (Ann's conflicted copy 2025-01-02).json" << true;
        QTest::newRow("nextcloud, at start") << "palettes (conflicted copy 2025-01-02 101010).json" << false;
    }
    void conflictCopyIsMergedOnce()
    {
        QFETCH(QString, copyName);
        QFETCH(bool, whileRunning);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("palettes.json"));
        const Palette both = PaletteStorage(dir.path()).createPalette(QStringLiteral("both"));
        const ColorItem theirColor = someColor(2), myColor = someColor(3);
        Palette onlyTheirs;
        const QByteArray copy = changedElsewhere(path, [&](PaletteStorage &other) {
            other.addColor(theirColor, both.id);
            onlyTheirs = other.createPalette(QStringLiteral("theirs"));
        });
        PaletteStorage(dir.path()).addColor(myColor, both.id);
        StdoutCapture out;
        const auto check = [&](const PaletteStorage &storage) {
            QCOMPARE(storage.palettes().size(), 2);
            QVERIFY(storage.palette(onlyTheirs.id));
            const QList<ColorItem> colors = storage.palette(both.id)->colors;
            QCOMPARE(colors.size(), 2);
            QCOMPARE(colors.at(0).id, myColor.id); // the main file's order first
            QCOMPARE(colors.at(1).id, theirColor.id);
            QCOMPARE(onDisk(path), summary(storage.palettes()));
            QVERIFY(out.text().count('\n') == 1 && out.text().contains(copyName.toUtf8()));
            QCOMPARE(QDir(dir.path()).entryList({QStringLiteral("*.merged")}),
                     QStringList(copyName + ".merged"));
        };
        std::unique_ptr<PaletteStorage> running;
        if (whileRunning)
            running = std::make_unique<PaletteStorage>(dir.path());
        writeFile(dir.filePath(copyName), copy);
        if (running) {
            QTRY_COMPARE(running->palettes().size(), 2);
            check(*running);
        }
        check(PaletteStorage(dir.path()));
        check(PaletteStorage(dir.path())); // not merged a second time
    }

    void ownSavesAreNotReloaded()
    {
        QTemporaryDir dir;
        HistoryStorage storage(dir.path());
        QSignalSpy changed(&storage, &HistoryStorage::colorsChanged);
        storage.addColor(someColor(1));
        QTest::qWait(400);
        QCOMPARE(changed.size(), 1);
        // Someone else's history shows without a change here.
        HistoryStorage(dir.path()).addColor(someColor(40));
        QTRY_COMPARE(storage.colors().size(), 2);
        QCOMPARE(changed.size(), 2);
    }
};

QTEST_GUILESS_MAIN(TestExternalChanges)
#include "tst_externalchanges.moc"
