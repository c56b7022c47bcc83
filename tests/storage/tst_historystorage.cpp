#include "storage/HistoryStorage.h"
#include "support/StdoutCapture.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {

ColorItem color(double r, double g, double b, double a = 1.0)
{
    return ColorItem::create(QStringLiteral("Picked Color"), r, g, b, a);
}

// What a reload gives back: dates in whole seconds.
QList<ColorItem> wholeSeconds(QList<ColorItem> colors)
{
    for (ColorItem &item : colors)
        item.dateAdded = QDateTime::fromSecsSinceEpoch(item.dateAdded.toSecsSinceEpoch(), Qt::UTC);
    return colors;
}

} // namespace

class TestHistoryStorage : public QObject
{
    Q_OBJECT

private slots:
    void nearDuplicates_data();
    void nearDuplicates();
    void keepsTheNewestTwenty();
    void everyChangeIsWrittenAndSignalled();
};

void TestHistoryStorage::nearDuplicates_data()
{
    QTest::addColumn<QList<double>>("added"); // next to 0.5, 0.5, 0.5, 1
    QTest::addColumn<bool>("replaces");
    QTest::newRow("0.005 apart") << QList<double>{0.505, 0.505, 0.505, 1} << true;
    QTest::newRow("only alpha differs") << QList<double>{0.5, 0.5, 0.5, 0.3} << true;
    QTest::newRow("red 0.01 apart") << QList<double>{0.51, 0.5, 0.5, 1} << false;
    QTest::newRow("green 0.02 apart") << QList<double>{0.5, 0.52, 0.5, 1} << false;
    QTest::newRow("blue 0.02 apart") << QList<double>{0.5, 0.5, 0.52, 1} << false;
}

void TestHistoryStorage::nearDuplicates()
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

void TestHistoryStorage::keepsTheNewestTwenty()
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

void TestHistoryStorage::everyChangeIsWrittenAndSignalled()
{
    QTemporaryDir dir;
    HistoryStorage history(dir.path());
    QVERIFY(!QFile::exists(history.filePath())); // loading writes nothing
    QSignalSpy changes(&history, &HistoryStorage::colorsChanged);
    const ColorItem a = color(0.1, 0.1, 0.1, 0.5), b = color(0.9, 0.9, 0.9);
    history.addColor(a);
    history.addColor(b);
    history.addColor(color(0.5, 0.2, 0.2));
    history.removeColor(a.id);
    history.removeColor(QUuid::createUuid()); // unknown: nothing changes
    QCOMPARE(changes.size(), 4);
    QCOMPARE(history.colors().last().id, b.id);
    QCOMPARE(HistoryStorage(dir.path()).colors(), wholeSeconds(history.colors()));
    history.clear();
    history.clear(); // already empty: nothing to tell
    QCOMPARE(changes.size(), 5);
    StdoutCapture out;
    QVERIFY(HistoryStorage(dir.path()).colors().isEmpty());
    QCOMPARE(out.text(), QByteArray()); // an empty list on disk, not a missing or broken file
    QVERIFY(QFile::exists(history.filePath()));
}

QTEST_GUILESS_MAIN(TestHistoryStorage)
#include "tst_historystorage.moc"
