#include "storage/PaletteStorage.h"
#include "support/StdoutCapture.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {

// What a reload gives back: the same palettes, dates in whole seconds.
QList<Palette> onDisk(QList<Palette> palettes)
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

class TestPaletteStorage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void everyChangeIsWrittenInOrder();
    void unknownIdsChangeAndWriteNothing_data();
    void unknownIdsChangeAndWriteNothing();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestPaletteStorage::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
}

void TestPaletteStorage::everyChangeIsWrittenInOrder()
{
    PaletteStorage storage(m_dir->path());
    QSignalSpy changes(&storage, &PaletteStorage::palettesChanged);
    // Each change is on disk at once: a reload gives the same palettes.
    const auto written = [&] {
        QCOMPARE(PaletteStorage(m_dir->path()).palettes(), onDisk(storage.palettes()));
    };
    // No checks on names: duplicates and blanks are the user's to choose.
    const Palette a = storage.createPalette(QStringLiteral("A"));
    const Palette b = storage.createPalette(QStringLiteral("A"));
    const Palette c = storage.createPalette(QStringLiteral("  "));
    QVERIFY(a.id != b.id);
    written();
    storage.renamePalette(c.id, QStringLiteral(" Brand ✓ "));
    written();
    // The same color twice is kept twice, and removed together.
    const ColorItem sky = ColorItem::create(QStringLiteral("Sky"), 0.2, 0.4, 0.8, 0.5);
    const ColorItem sea = ColorItem::create(QStringLiteral("Sea"), 0.1, 0.3, 0.5);
    for (const ColorItem &item : {sky, sea, sky})
        storage.addColor(item, c.id);
    QCOMPARE(storage.palette(c.id)->colors, (QList<ColorItem>{sky, sea, sky}));
    written();
    storage.removeColor(sky.id, c.id);
    written();
    storage.deletePalette(b.id);
    QCOMPARE(changes.size(), 9);

    QCOMPARE(storage.palettes().size(), 2);
    QCOMPARE(storage.palettes().at(0).id, a.id);
    QCOMPARE(storage.palettes().at(1).name, QStringLiteral(" Brand ✓ "));
    QCOMPARE(storage.palette(c.id)->colors, QList<ColorItem>{sea});
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
    PaletteStorage storage(m_dir->path());
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

QTEST_GUILESS_MAIN(TestPaletteStorage)
#include "tst_palettestorage.moc"
