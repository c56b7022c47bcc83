// The stores against other programs writing their files while they run: a
// sync tool replacing the file, a hand edit, a half-written file, conflict
// copies left beside it.
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

#include "model/RecordCoding.h"
#include "support/StdoutCapture.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QSet>
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
    if (how == Write::InPlaceKeepingSizeAndTime) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite)
                && file.setFileTime(before, QFileDevice::FileModificationTime));
    }
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
    void bothSidesChangesAreKept_data();
    void bothSidesChangesAreKept();
    void halfWrittenFileIsWaitedFor_data();
    void halfWrittenFileIsWaitedFor();
    void conflictCopyIsMergedOnce_data();
    void conflictCopyIsMergedOnce();
    void ownSavesAreNotReloaded();
};

void TestExternalChanges::bothSidesChangesAreKept_data()
{
    QTest::addColumn<Write>("how");
    QTest::addColumn<bool>("seenFirst"); // the program reloads before its own change
    QTest::newRow("atomic rename, unseen") << Write::AtomicRename << false;
    QTest::newRow("atomic rename, seen") << Write::AtomicRename << true;
    QTest::newRow("in place, unseen") << Write::InPlace << false;
    QTest::newRow("in place, same size and time") << Write::InPlaceKeepingSizeAndTime << false;
}

void TestExternalChanges::bothSidesChangesAreKept()
{
    QFETCH(Write, how);
    QFETCH(bool, seenFirst);
    QTemporaryDir dir;
    PaletteStorage storage(dir.path());
    const QString path = storage.filePath();
    const QUuid shared = storage.createPalette(QStringLiteral("shared")).id;
    const QUuid doomed = storage.createPalette(QStringLiteral("doomed")).id;

    StdoutCapture out;
    QSet<QUuid> added, theirPalettes;
    QString sharedName = QStringLiteral("shared");
    for (int round = 0; round < 3; ++round) {
        writeAsAnotherProgram(
            path,
            changedElsewhere(path,
                             [&](PaletteStorage &other) {
                                 if (how == Write::InPlaceKeepingSizeAndTime) {
                                     // The one change neither size nor time shows.
                                     sharedName = QStringLiteral("share%1").arg(round);
                                     other.renamePalette(shared, sharedName);
                                     return;
                                 }
                                 const ColorItem item = someColor(50 + round);
                                 other.addColor(item, shared);
                                 added.insert(item.id);
                                 theirPalettes.insert(
                                     other.createPalette(QStringLiteral("theirs %1").arg(round)).id);
                                 if (round == 1)
                                     other.deletePalette(doomed);
                             }),
            how);
        if (seenFirst)
            QTRY_COMPARE(summary(storage.palettes()), onDisk(path));

        const ColorItem mine = someColor(round);
        storage.addColor(mine, shared);
        added.insert(mine.id);
        const bool doomedKept = round < 1 || how == Write::InPlaceKeepingSizeAndTime;
        if (round >= 1) {
            // Deleted elsewhere: stays deleted.
            const ColorItem late = someColor(90 + round);
            storage.addColor(late, doomed);
            if (doomedKept)
                added.insert(late.id);
        }

        QCOMPARE(summary(storage.palettes()), onDisk(path));
        QSet<QUuid> colorIds;
        for (const Palette &palette : storage.palettes())
            for (const ColorItem &item : palette.colors)
                colorIds.insert(item.id);
        QCOMPARE(colorIds, added);
        for (const QUuid &id : std::as_const(theirPalettes))
            QVERIFY(storage.palette(id));
        QCOMPARE(storage.palette(shared)->name, sharedName);
        QCOMPARE(bool(storage.palette(doomed)), doomedKept);
    }
    QCOMPARE(out.text(), QByteArray());
}

void TestExternalChanges::halfWrittenFileIsWaitedFor_data()
{
    QTest::addColumn<bool>("completed");
    QTest::newRow("completed a moment later") << true;
    QTest::newRow("left truncated") << false;
}

void TestExternalChanges::halfWrittenFileIsWaitedFor()
{
    QFETCH(bool, completed);
    QTemporaryDir dir;
    PaletteStorage storage(dir.path());
    const QString path = storage.filePath();
    storage.createPalette(QStringLiteral("mine"));
    const QList<Palette> mine = storage.palettes();
    const QByteArray theirs =
        changedElsewhere(path, [](PaletteStorage &other) { other.createPalette(QStringLiteral("theirs")); });

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

void TestExternalChanges::conflictCopyIsMergedOnce_data()
{
    QTest::addColumn<QString>("copyName");
    QTest::addColumn<bool>("whileRunning");
    QTest::newRow("syncthing, at start") << "palettes.sync-conflict-20250102-101010-ABCDEFG.json" << false;
    QTest::newRow("dropbox, while running") << "palettes (Ann's conflicted copy 2025-01-02).json" << true;
    QTest::newRow("nextcloud, at start") << "palettes (conflicted copy 2025-01-02 101010).json" << false;
}

void TestExternalChanges::conflictCopyIsMergedOnce()
{
    QFETCH(QString, copyName);
    QFETCH(bool, whileRunning);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("palettes.json"));
    Palette both = PaletteStorage(dir.path()).createPalette(QStringLiteral("both"));
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
        const QList<ColorItem> colors = storage.palette(both.id)->colors;
        QCOMPARE(colors.size(), 2);
        QCOMPARE(colors.at(0).id, myColor.id); // the main file's order first
        QCOMPARE(colors.at(1).id, theirColor.id);
        QVERIFY(storage.palette(onlyTheirs.id));
        QCOMPARE(onDisk(path), summary(storage.palettes()));
        QVERIFY(out.text().count('\n') == 1 && out.text().contains(copyName.toUtf8()));
        QCOMPARE(QDir(dir.path()).entryList({QStringLiteral("*.merged")}), QStringList(copyName + ".merged"));
    };
    if (whileRunning) {
        PaletteStorage storage(dir.path());
        writeFile(dir.filePath(copyName), copy);
        QTRY_COMPARE(storage.palettes().size(), 2);
        check(storage);
    } else {
        writeFile(dir.filePath(copyName), copy);
        check(PaletteStorage(dir.path()));
    }
    check(PaletteStorage(dir.path())); // not merged a second time
}

void TestExternalChanges::ownSavesAreNotReloaded()
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

QTEST_GUILESS_MAIN(TestExternalChanges)
#include "tst_externalchanges.moc"
