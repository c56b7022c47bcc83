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

} // namespace

class TestHistoryStorage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void nearDuplicates_data();
    void nearDuplicates();
    void keepsTheNewestTwenty();
    void removeClearAndSignals();
    void everyChangeIsWrittenAndReloads();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestHistoryStorage::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
}

void TestHistoryStorage::nearDuplicates_data()
{
    QTest::addColumn<QList<double>>("existing");
    QTest::addColumn<QList<double>>("added");
    QTest::addColumn<bool>("replaces");
    const auto row = [](const char *name, QList<double> existing, QList<double> added, bool replaces) {
        QTest::newRow(name) << existing << added << replaces;
    };
    row("0.005 apart", {0.5, 0.5, 0.5, 1}, {0.505, 0.505, 0.505, 1}, true);
    row("only alpha differs", {0.2, 0.4, 0.6, 1}, {0.2, 0.4, 0.6, 0.3}, true);
    row("red 0.01 apart", {0.25, 0.5, 0.5, 1}, {0.26, 0.5, 0.5, 1}, false);
    row("green 0.02 apart", {0.5, 0.5, 0.5, 1}, {0.5, 0.52, 0.5, 1}, false);
    row("blue 0.02 apart", {0.5, 0.5, 0.5, 1}, {0.5, 0.5, 0.52, 1}, false);
}

void TestHistoryStorage::nearDuplicates()
{
    QFETCH(QList<double>, existing);
    QFETCH(QList<double>, added);
    QFETCH(bool, replaces);
    HistoryStorage history(m_dir->path());
    history.addColor(color(existing[0], existing[1], existing[2], existing[3]));
    history.addColor(color(0.9, 0.1, 0.1));
    const ColorItem item = color(added[0], added[1], added[2], added[3]);
    history.addColor(item);
    // A repick goes to the top, not into the old one's place.
    QCOMPARE(history.colors().size(), replaces ? 2 : 3);
    QVERIFY(history.colors().first() == item);
}

void TestHistoryStorage::keepsTheNewestTwenty()
{
    HistoryStorage history(m_dir->path());
    QList<ColorItem> added;
    for (int i = 0; i < 21; ++i) {
        added.append(color(i / 25.0, 0, 0));
        history.addColor(added.last());
    }
    QCOMPARE(history.colors().size(), 20);
    QVERIFY(history.colors().first() == added.last());
    QVERIFY(history.colors().last() == added.at(1)); // the first one fell off
    QCOMPARE(HistoryStorage(m_dir->path()).colors().size(), 20);
}

void TestHistoryStorage::removeClearAndSignals()
{
    HistoryStorage history(m_dir->path());
    QSignalSpy changes(&history, &HistoryStorage::colorsChanged);
    const ColorItem a = color(0.1, 0.1, 0.1);
    const ColorItem b = color(0.9, 0.9, 0.9);
    history.addColor(a);
    history.addColor(b);
    history.removeColor(a.id);
    history.removeColor(QUuid::createUuid()); // unknown: nothing changes
    QCOMPARE(history.colors().size(), 1);
    QCOMPARE(history.colors().first().id, b.id);
    QCOMPARE(changes.size(), 3);
    history.clear();
    history.clear(); // already empty: nothing to tell
    QCOMPARE(changes.size(), 4);
    StdoutCapture out;
    QVERIFY(HistoryStorage(m_dir->path()).colors().isEmpty());
    QCOMPARE(out.text(), QByteArray()); // an empty list on disk, not a missing or broken file
    QVERIFY(QFile::exists(history.filePath()));
}

void TestHistoryStorage::everyChangeIsWrittenAndReloads()
{
    QList<ColorItem> expected;
    {
        HistoryStorage history(m_dir->path());
        QVERIFY(!QFile::exists(history.filePath())); // loading writes nothing
        history.addColor(color(0.2, 0.3, 0.4, 0.5));
        history.addColor(color(0.7, 0.1, 0.3));
        expected = history.colors();
    }
    // Whole seconds on disk.
    for (ColorItem &item : expected)
        item.dateAdded = QDateTime::fromSecsSinceEpoch(item.dateAdded.toSecsSinceEpoch(), Qt::UTC);
    QCOMPARE(HistoryStorage(m_dir->path()).colors(), expected);
}

QTEST_GUILESS_MAIN(TestHistoryStorage)
#include "tst_historystorage.moc"
