#include "model/PaletteExchange.h"
#include "storage/PaletteFiles.h"
#include "storage/PaletteStorage.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

// What an import and an export do on disk: palette files read with their
// limits and written whole, and an imported palette entering the store in
// one step.
class TestPaletteFiles : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void readRefuses_data();
    void readRefuses();
    void readNamesThePaletteAfterTheFile();
    void writeReplacesWholeOrNotAtAll();
    void importedPaletteIsAddedInOneSave();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestPaletteFiles::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void TestPaletteFiles::readRefuses_data()
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
}

void TestPaletteFiles::readRefuses()
{
    QFETCH(QString, name);
    QFETCH(QString, why);
    const QDir dir(m_dir->path());
    QVERIFY(dir.mkdir(QStringLiteral("folder.gpl")));
    QVERIFY(mkfifo(QFile::encodeName(dir.filePath(QStringLiteral("fifo.gpl"))).constData(), 0600) == 0);
    // Sparse: its size says too large, its bytes would read as a palette.
    QFile huge(dir.filePath(QStringLiteral("huge.gpl")));
    QVERIFY(huge.open(QIODevice::WriteOnly));
    huge.write("GIMP Palette\n1 2 3\n");
    QVERIFY(huge.resize(PaletteExchange::maxFileSize + 1));
    huge.close();

    const ExchangeResult result = PaletteFiles::read(dir.filePath(name));
    QVERIFY(!result.palette);
    QVERIFY2(result.error.contains(why), qPrintable(result.error));
}

void TestPaletteFiles::readNamesThePaletteAfterTheFile()
{
    const QString path = m_dir->filePath(QStringLiteral("Sea.and.Sky.css"));
    QVERIFY(PaletteFiles::write(path, ":root { --sea: #006994; }").isEmpty());
    const ExchangeResult result = PaletteFiles::read(path);
    QVERIFY(result.palette);
    QCOMPARE(result.palette->name, QStringLiteral("Sea.and.Sky"));
    QCOMPARE(result.palette->colors.size(), 1);
}

void TestPaletteFiles::writeReplacesWholeOrNotAtAll()
{
    const QString path = m_dir->filePath(QStringLiteral("out.gpl"));
    QVERIFY(PaletteFiles::write(path, "old").isEmpty());
    QVERIFY(PaletteFiles::write(path, "new").isEmpty());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("new"));
    QVERIFY(!PaletteFiles::write(m_dir->filePath(QStringLiteral("no/such/folder.gpl")), "x").isEmpty());
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files), QStringList{"out.gpl"}); // no temporary left
}

void TestPaletteFiles::importedPaletteIsAddedInOneSave()
{
    PaletteStorage storage(m_dir->path());
    const Palette first = storage.createPalette(QStringLiteral("First"));
    const QList<ColorItem> colors = {ColorItem::create(QStringLiteral("a"), 1, 0, 0),
                                     ColorItem::create(QStringLiteral("b"), 0, 0, 1)};
    QSignalSpy changed(&storage, &PaletteStorage::palettesChanged);
    const Palette imported = storage.createPalette(QStringLiteral("Imported"), colors);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(storage.palettes().size(), 2);
    QCOMPARE(storage.palettes().first().id, first.id);
    QCOMPARE(storage.palettes().last(), imported);
    QCOMPARE(imported.colors, colors);
    QVERIFY(imported.id != first.id);

    const PaletteStorage reloaded(m_dir->path());
    QCOMPARE(reloaded.palettes().last().colors.size(), 2);
}

QTEST_GUILESS_MAIN(TestPaletteFiles)
#include "tst_palettefiles.moc"
