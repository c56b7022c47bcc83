#include "storage/PaletteStorage.h"

#include "model/RecordCoding.h"
#include "support/StdoutCapture.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {

QList<Palette> readBack(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return RecordCoding::decodePalettes(file.readAll()).value.value_or(QList<Palette>{});
}

} // namespace

class TestPaletteStorage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void createsInOrderWithoutChecks();
    void renames();
    void unknownIdsChangeAndWriteNothing_data();
    void unknownIdsChangeAndWriteNothing();
    void addsDuplicatesAndRemovesThemTogether();
    void deleteKeepsOrder();
    void reloadsWhatWasWritten();
    void signalsChanges();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestPaletteStorage::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void TestPaletteStorage::createsInOrderWithoutChecks()
{
    PaletteStorage storage(m_dir->path());
    const Palette a1 = storage.createPalette(QStringLiteral("A"));
    const Palette a2 = storage.createPalette(QStringLiteral("A"));
    const Palette blank = storage.createPalette(QStringLiteral("  "));
    QCOMPARE(storage.palettes().size(), 3);
    QVERIFY(a1.id != a2.id);
    QCOMPARE(storage.palettes().at(0).id, a1.id);
    QCOMPARE(storage.palettes().at(1).id, a2.id);
    QCOMPARE(storage.palettes().at(2).name, QStringLiteral("  "));
    QVERIFY(blank.colors.isEmpty());
    QCOMPARE(readBack(storage.filePath()).size(), 3);
}

void TestPaletteStorage::renames()
{
    PaletteStorage storage(m_dir->path());
    const Palette palette = storage.createPalette(QStringLiteral("Old"));
    storage.renamePalette(palette.id, QStringLiteral(" New "));
    QCOMPARE(storage.palettes().first().name, QStringLiteral(" New "));
    QCOMPARE(readBack(storage.filePath()).first().name, QStringLiteral(" New "));
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
    switch (operation) {
    case 0:
        storage.renamePalette(deleted.id, QStringLiteral("x"));
        break;
    case 1:
        storage.addColor(item, deleted.id);
        break;
    case 2:
        storage.removeColor(item.id, deleted.id);
        break;
    }
    QVERIFY(storage.palettes().isEmpty());
    QCOMPARE(spy.count(), 0);
    QVERIFY(!QFile::exists(storage.filePath()));
}

void TestPaletteStorage::addsDuplicatesAndRemovesThemTogether()
{
    PaletteStorage storage(m_dir->path());
    const Palette palette = storage.createPalette(QStringLiteral("P"));
    const ColorItem item = ColorItem::create(QStringLiteral("Sky"), 0.2, 0.4, 0.8, 0.5);
    const ColorItem other = ColorItem::create(QStringLiteral("Sea"), 0.1, 0.3, 0.5);
    storage.addColor(item, palette.id);
    storage.addColor(other, palette.id);
    storage.addColor(item, palette.id);
    QCOMPARE(storage.palettes().first().colors.size(), 3);
    QVERIFY(storage.palettes().first().colors.first() == item); // unchanged

    storage.removeColor(item.id, palette.id);
    QCOMPARE(storage.palettes().first().colors.size(), 1);
    QCOMPARE(storage.palettes().first().colors.first().id, other.id);
    QCOMPARE(readBack(storage.filePath()).first().colors.size(), 1);
}

void TestPaletteStorage::deleteKeepsOrder()
{
    PaletteStorage storage(m_dir->path());
    const Palette a = storage.createPalette(QStringLiteral("a"));
    const Palette b = storage.createPalette(QStringLiteral("b"));
    const Palette c = storage.createPalette(QStringLiteral("c"));
    storage.deletePalette(b.id);
    QCOMPARE(storage.palettes().size(), 2);
    QCOMPARE(storage.palettes().at(0).id, a.id);
    QCOMPARE(storage.palettes().at(1).id, c.id);
    QVERIFY(!storage.palette(b.id));
    QCOMPARE(storage.palette(c.id)->name, QStringLiteral("c"));
}

void TestPaletteStorage::reloadsWhatWasWritten()
{
    Palette written;
    {
        PaletteStorage storage(m_dir->path());
        written = storage.createPalette(QStringLiteral("Brand ✓"));
        storage.addColor(ColorItem::create(QStringLiteral("Ink"), 0.1, 0.2, 0.3), written.id);
    }
    StdoutCapture out;
    PaletteStorage reloaded(m_dir->path());
    QCOMPARE(out.text(), QByteArray());
    QCOMPARE(reloaded.palettes().size(), 1);
    const Palette &back = reloaded.palettes().first();
    QCOMPARE(back.id, written.id);
    QCOMPARE(back.name, written.name);
    QCOMPARE(back.colors.size(), 1);
    QCOMPARE(back.colors.first().blue, 0.3);
    QCOMPARE(back.dateCreated.toSecsSinceEpoch(), written.dateCreated.toSecsSinceEpoch());
}

void TestPaletteStorage::signalsChanges()
{
    PaletteStorage storage(m_dir->path());
    QSignalSpy spy(&storage, &PaletteStorage::palettesChanged);
    const Palette p = storage.createPalette(QStringLiteral("P"));
    storage.addColor(ColorItem::create(QStringLiteral("c"), 0, 0, 0), p.id);
    storage.renamePalette(p.id, QStringLiteral("Q"));
    storage.deletePalette(p.id);
    QCOMPARE(spy.count(), 4);
}

QTEST_GUILESS_MAIN(TestPaletteStorage)
#include "tst_palettestorage.moc"
