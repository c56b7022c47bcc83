#include "model/PaletteExchange.h"
#include "storage/PaletteFiles.h"
#include "storage/PaletteStorage.h"
#include "support/StdoutCapture.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace {

// What a reload gives back: the same palettes, dates in whole seconds.
QList<Palette> wholeSeconds(QList<Palette> palettes)
{
    const auto seconds = [](const QDateTime &t) {
        return QDateTime::fromSecsSinceEpoch(t.toSecsSinceEpoch(), Qt::UTC);
    };
    for (Palette &palette : palettes) {
        palette.dateCreated = seconds(palette.dateCreated);
        for (ColorItem &item : palette.colors)
            item.dateAdded = seconds(item.dateAdded);
    }
    return palettes;
}

} // namespace

// The palette store's changes, and the palette files an import reads and an
// export writes.
class TestPaletteStorage : public QObject
{
    Q_OBJECT

private slots:
    void everyChangeIsWrittenInOrder();
    void unknownIdsChangeAndWriteNothing_data();
    void unknownIdsChangeAndWriteNothing();
    void fileReadRefuses_data();
    void fileReadRefuses();
    void fileWriteReplacesWholeOrNotAtAll();
};

void TestPaletteStorage::everyChangeIsWrittenInOrder()
{
    QTemporaryDir dir;
    PaletteStorage storage(dir.path());
    QSignalSpy changes(&storage, &PaletteStorage::palettesChanged);
    // Each change is on disk at once: a reload gives the same palettes.
    const auto written = [&] {
        QCOMPARE(PaletteStorage(dir.path()).palettes(), wholeSeconds(storage.palettes()));
    };
    // No checks on names: duplicates and blanks are the user's to choose.
    const Palette a = storage.createPalette(QStringLiteral("A"));
    const Palette b = storage.createPalette(QStringLiteral("A"));
    const Palette c = storage.createPalette(QStringLiteral("  "));
    QVERIFY(a.id != b.id);
    storage.renamePalette(c.id, QStringLiteral(" Brand ✓ "));
    written();
    // The same color twice is kept twice, and removed together.
    const ColorItem sky = ColorItem::create(QStringLiteral("Sky"), 0.2, 0.4, 0.8, 0.5);
    const ColorItem sea = ColorItem::create(QStringLiteral("Sea"), 0.1, 0.3, 0.5);
    for (const ColorItem &item : {sky, sea, sky})
        storage.addColor(item, c.id);
    QCOMPARE(storage.palette(c.id)->colors, (QList<ColorItem>{sky, sea, sky}));
    storage.removeColor(sky.id, c.id);
    written();
    storage.deletePalette(b.id);
    QCOMPARE(changes.size(), 9);
    // An imported palette comes in one change, colors and all, at the end.
    const Palette imported = storage.createPalette(QStringLiteral("Imported"), {sky, sea});
    QCOMPARE(changes.size(), 10);
    QCOMPARE(imported.colors, (QList<ColorItem>{sky, sea}));

    QCOMPARE(storage.palettes().size(), 3);
    QCOMPARE(storage.palettes().at(0).id, a.id);
    QCOMPARE(storage.palettes().at(1).name, QStringLiteral(" Brand ✓ "));
    QCOMPARE(storage.palette(c.id)->colors, QList<ColorItem>{sea});
    QCOMPARE(storage.palettes().at(2), imported);
    QVERIFY(!storage.palette(b.id));
    StdoutCapture out;
    written();
    QCOMPARE(out.text(), QByteArray());
}

void TestPaletteStorage::unknownIdsChangeAndWriteNothing_data()
{
    QTest::addColumn<int>("operation");
    QTest::newRow("rename") << 0;
    QTest::newRow("add color") << 1;
    QTest::newRow("remove color") << 2;
}

void TestPaletteStorage::unknownIdsChangeAndWriteNothing()
{
    QFETCH(int, operation);
    QTemporaryDir dir;
    PaletteStorage storage(dir.path());
    const Palette deleted = storage.createPalette(QStringLiteral("Gone"));
    storage.deletePalette(deleted.id);
    QVERIFY(QFile::remove(storage.filePath()));
    QSignalSpy spy(&storage, &PaletteStorage::palettesChanged);
    const ColorItem item = ColorItem::create(QStringLiteral("c"), 0, 0, 0);
    if (operation == 0)
        storage.renamePalette(deleted.id, QStringLiteral("x"));
    else if (operation == 1)
        storage.addColor(item, deleted.id);
    else
        storage.removeColor(item.id, deleted.id);
    QVERIFY(storage.palettes().isEmpty());
    QCOMPARE(spy.count(), 0);
    QVERIFY(!QFile::exists(storage.filePath()));
}

void TestPaletteStorage::fileReadRefuses_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("why");
    QTest::newRow("missing") << "none.gpl"
                             << "exist";
    QTest::newRow("a folder") << "folder.gpl"
                              << "folder";
    QTest::newRow("a fifo") << "fifo.gpl"
                            << "regular";
    QTest::newRow("over 10 MB, not read") << "huge.gpl"
                                          << "MB";
    QTest::newRow("named after the file") << "Sea.and.Sky.css"
                                          << "";
}

void TestPaletteStorage::fileReadRefuses()
{
    QFETCH(QString, name);
    QFETCH(QString, why);
    QTemporaryDir temporary;
    const QDir dir(temporary.path());
    QVERIFY(dir.mkdir(QStringLiteral("folder.gpl")));
    QVERIFY(mkfifo(QFile::encodeName(dir.filePath(QStringLiteral("fifo.gpl"))).constData(), 0600) == 0);
    writeFile(dir.filePath(QStringLiteral("Sea.and.Sky.css")), ":root { --sea: #006994; }");
    // Sparse: its size says too large, its bytes would read as a palette.
    QFile huge(dir.filePath(QStringLiteral("huge.gpl")));
    QVERIFY(huge.open(QIODevice::WriteOnly) && huge.write("GIMP Palette\n1 2 3\n") > 0);
    QVERIFY(huge.resize(PaletteExchange::maxFileSize + 1));

    const ExchangeResult result = PaletteFiles::read(dir.filePath(name));
    QCOMPARE(bool(result.palette), why.isEmpty());
    QVERIFY2(result.error.contains(why), qPrintable(result.error));
    if (result.palette)
        QCOMPARE(result.palette->name, QStringLiteral("Sea.and.Sky"));
}

void TestPaletteStorage::fileWriteReplacesWholeOrNotAtAll()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.gpl"));
    QVERIFY(PaletteFiles::write(path, "old").isEmpty());
    QVERIFY(PaletteFiles::write(path, "new").isEmpty());
    QCOMPARE(readFile(path), QByteArray("new"));
    QVERIFY(!PaletteFiles::write(dir.filePath(QStringLiteral("no/such/folder.gpl")), "x").isEmpty());
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{"out.gpl"}); // no temporary left
}

QTEST_GUILESS_MAIN(TestPaletteStorage)
#include "tst_palettestorage.moc"
