#include "storage/HistoryStorage.h"

#include "model/RecordCoding.h"
#include "support/StdoutCapture.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {

ColorItem color(double r, double g, double b, double a = 1.0)
{
    return ColorItem::create(QStringLiteral("Picked Color"), r, g, b, a);
}

QList<ColorItem> readBack(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return RecordCoding::decodeColors(file.readAll()).value.value_or(QList<ColorItem>{});
}

} // namespace

class TestHistoryStorage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void startsEmptyWithoutFile();
    void nearDuplicates_data();
    void nearDuplicates();
    void keepsTheNewestTwenty();
    void repickMovesToTop();
    void removeAndClear();
    void everyChangeIsWrittenAndReloads();
    void signalsChanges();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestHistoryStorage::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void TestHistoryStorage::startsEmptyWithoutFile()
{
    StdoutCapture out;
    HistoryStorage history(m_dir->path());
    QVERIFY(history.colors().isEmpty());
    QCOMPARE(history.filePath(), m_dir->path() + QStringLiteral("/history.json"));
    QVERIFY(!QFile::exists(history.filePath())); // loading writes nothing
    QCOMPARE(out.text(), QByteArray());
}

void TestHistoryStorage::nearDuplicates_data()
{
    QTest::addColumn<QList<double>>("existing");
    QTest::addColumn<QList<double>>("added");
    QTest::addColumn<int>("count");
    QTest::newRow("0.005 apart replaces")
        << QList<double>{0.5, 0.5, 0.5, 1} << QList<double>{0.505, 0.505, 0.505, 1} << 1;
    QTest::newRow("0.01 apart in one keeps both")
        << QList<double>{0.25, 0.5, 0.5, 1} << QList<double>{0.26, 0.5, 0.5, 1} << 2;
    QTest::newRow("only alpha differs replaces")
        << QList<double>{0.2, 0.4, 0.6, 1} << QList<double>{0.2, 0.4, 0.6, 0.3} << 1;
    QTest::newRow("far apart keeps both") << QList<double>{0, 0, 0, 1} << QList<double>{1, 1, 1, 1} << 2;
    QTest::newRow("blue differs keeps both")
        << QList<double>{0.5, 0.5, 0.5, 1} << QList<double>{0.5, 0.5, 0.52, 1} << 2;
}

void TestHistoryStorage::nearDuplicates()
{
    QFETCH(QList<double>, existing);
    QFETCH(QList<double>, added);
    HistoryStorage history(m_dir->path());
    history.addColor(color(existing[0], existing[1], existing[2], existing[3]));
    const ColorItem item = color(added[0], added[1], added[2], added[3]);
    history.addColor(item);
    QFETCH(int, count);
    QCOMPARE(history.colors().size(), count);
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
    QCOMPARE(history.colors().size(), HistoryStorage::maxColors);
    QVERIFY(history.colors().first() == added.last());
    QVERIFY(history.colors().last() == added.at(1)); // the first one fell off
    QCOMPARE(readBack(history.filePath()).size(), 20);
}

void TestHistoryStorage::repickMovesToTop()
{
    HistoryStorage history(m_dir->path());
    const ColorItem red = color(1, 0, 0);
    history.addColor(red);
    history.addColor(color(0, 1, 0));
    const ColorItem redAgain = color(1, 0, 0);
    history.addColor(redAgain);
    QCOMPARE(history.colors().size(), 2);
    QCOMPARE(history.colors().first().id, redAgain.id);
    QVERIFY(redAgain.id != red.id);
}

void TestHistoryStorage::removeAndClear()
{
    HistoryStorage history(m_dir->path());
    const ColorItem a = color(0.1, 0.1, 0.1);
    const ColorItem b = color(0.9, 0.9, 0.9);
    history.addColor(a);
    history.addColor(b);
    history.removeColor(a.id);
    QCOMPARE(history.colors().size(), 1);
    QCOMPARE(history.colors().first().id, b.id);
    history.removeColor(QUuid::createUuid()); // unknown: nothing changes
    QCOMPARE(history.colors().size(), 1);

    history.clear();
    QVERIFY(history.colors().isEmpty());
    QFile file(history.filePath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const Decoded<QList<ColorItem>> onDisk = RecordCoding::decodeColors(file.readAll());
    QVERIFY(onDisk.value && onDisk.value->isEmpty());
}

void TestHistoryStorage::everyChangeIsWrittenAndReloads()
{
    QList<ColorItem> expected;
    {
        HistoryStorage history(m_dir->path());
        history.addColor(color(0.2, 0.3, 0.4, 0.5));
        history.addColor(color(0.7, 0.1, 0.3));
        expected = history.colors();
    }
    HistoryStorage reloaded(m_dir->path());
    QCOMPARE(reloaded.colors().size(), expected.size());
    for (qsizetype i = 0; i < expected.size(); ++i) {
        QCOMPARE(reloaded.colors().at(i).id, expected.at(i).id);
        QCOMPARE(reloaded.colors().at(i).red, expected.at(i).red);
        QCOMPARE(reloaded.colors().at(i).alpha, expected.at(i).alpha);
        QCOMPARE(reloaded.colors().at(i).dateAdded.toSecsSinceEpoch(),
                 expected.at(i).dateAdded.toSecsSinceEpoch());
    }
}

void TestHistoryStorage::signalsChanges()
{
    HistoryStorage history(m_dir->path());
    QSignalSpy spy(&history, &HistoryStorage::colorsChanged);
    history.addColor(color(0.1, 0.2, 0.3));
    history.clear();
    history.clear(); // already empty: nothing to tell
    QCOMPARE(spy.count(), 2);
}

QTEST_GUILESS_MAIN(TestHistoryStorage)
#include "tst_historystorage.moc"
