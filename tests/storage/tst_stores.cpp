// The history's and the palettes' rules, each change written at once.
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"
#include "support/StdoutCapture.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace {

ColorItem color(double r, double g, double b, double a = 1.0)
{
    return ColorItem::create(QStringLiteral("Picked Color"), r, g, b, a);
}

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
};

QTEST_GUILESS_MAIN(TestStores)
#include "tst_stores.moc"
