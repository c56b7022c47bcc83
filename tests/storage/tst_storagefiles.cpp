// Both file-backed stores against the file states a user's disk can hold.
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

#include "support/StdoutCapture.h"

#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

namespace {

// A store under test, seen through what both stores have in common.
struct StoreProbe
{
    QString fileName;
    QString loadMessage;
    QString saveMessage;
    std::function<int(const QString &folder)> loadedCount;
    std::function<int(const QString &folder)> addOneAndCount;
};

StoreProbe probe(const QString &store)
{
    if (store == QLatin1String("history")) {
        return {QStringLiteral("history.json"), QStringLiteral("Failed to load history: "),
                QStringLiteral("Failed to save history: "),
                [](const QString &folder) { return int(HistoryStorage(folder).colors().size()); },
                [](const QString &folder) {
                    HistoryStorage storage(folder);
                    storage.addColor(ColorItem::create(QStringLiteral("c"), 0.1, 0.2, 0.3));
                    return int(storage.colors().size());
                }};
    }
    return {QStringLiteral("palettes.json"), QStringLiteral("Failed to load palettes: "),
            QStringLiteral("Failed to save palettes: "),
            [](const QString &folder) { return int(PaletteStorage(folder).palettes().size()); },
            [](const QString &folder) {
                PaletteStorage storage(folder);
                storage.createPalette(QStringLiteral("p"));
                return int(storage.palettes().size());
            }};
}

QStringList corruptCopies(const QString &folder, const QString &fileName)
{
    return QDir(folder).entryList({fileName + QStringLiteral(".corrupt-*")}, QDir::Files | QDir::Dirs);
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

} // namespace

class TestStorageFiles : public QObject
{
    Q_OBJECT

private slots:
    void loading_data();
    void loading();
    void corruptFileIsKeptBeforeTheNextSave_data();
    void corruptFileIsKeptBeforeTheNextSave();
    void unwritableFolderReportsAndKeepsState_data();
    void unwritableFolderReportsAndKeepsState();
    void writableFileInAFixedFolderIsSavedInPlace_data();
    void writableFileInAFixedFolderIsSavedInPlace();
    void strayTemporaryFilesAreRemoved_data();
    void strayTemporaryFilesAreRemoved();
    void defaultFolderIsTheUserDataFolder();
};

void TestStorageFiles::loading_data()
{
    QTest::addColumn<QString>("store");
    QTest::addColumn<bool>("exists");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("fails");

    for (const char *store : {"history", "palettes"}) {
        const QString s = QString::fromLatin1(store);
        QTest::addRow("%s: missing", store) << s << false << QByteArray() << false;
        QTest::addRow("%s: empty array", store) << s << true << QByteArray("[]") << false;
        QTest::addRow("%s: empty file", store) << s << true << QByteArray() << true;
        QTest::addRow("%s: not json", store) << s << true << QByteArray("{{{ garbage") << true;
        QTest::addRow("%s: wrong records", store) << s << true << QByteArray("[{\"id\": 1}]") << true;
        QTest::addRow("%s: object", store) << s << true << QByteArray("{}") << true;
    }
}

void TestStorageFiles::loading()
{
    QFETCH(QString, store);
    QFETCH(bool, exists);
    QFETCH(QByteArray, content);
    QFETCH(bool, fails);
    const StoreProbe p = probe(store);
    QTemporaryDir dir;
    if (exists)
        writeFile(dir.filePath(p.fileName), content);

    StdoutCapture out;
    QCOMPARE(p.loadedCount(dir.path()), 0);
    const QByteArray printed = out.text();
    if (!fails) {
        QCOMPARE(printed, QByteArray());
        QVERIFY(corruptCopies(dir.path(), p.fileName).isEmpty());
        return;
    }
    QVERIFY2(printed.startsWith(p.loadMessage.toUtf8()), printed.constData());
    QVERIFY(printed.size() > p.loadMessage.size() + 1); // with a description
    QCOMPARE(printed.count('\n'), 1);
    QVERIFY(printed.endsWith('\n'));
    const QStringList copies = corruptCopies(dir.path(), p.fileName);
    QCOMPARE(copies.size(), 1);
    QVERIFY(
        QRegularExpression(QStringLiteral("\\.corrupt-\\d{8}T\\d{6}Z$")).match(copies.first()).hasMatch());
    QFile copy(dir.filePath(copies.first()));
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QCOMPARE(copy.readAll(), content);
}

void TestStorageFiles::corruptFileIsKeptBeforeTheNextSave_data()
{
    QTest::addColumn<QString>("store");
    QTest::newRow("history") << "history";
    QTest::newRow("palettes") << "palettes";
}

void TestStorageFiles::corruptFileIsKeptBeforeTheNextSave()
{
    QFETCH(QString, store);
    const StoreProbe p = probe(store);
    QTemporaryDir dir;
    const QByteArray months = "[ {\"name\": \"months of work, one comma short\" ";
    writeFile(dir.filePath(p.fileName), months);
    {
        StdoutCapture out;
        QCOMPARE(p.addOneAndCount(dir.path()), 1);
    }
    StdoutCapture out;
    QCOMPARE(p.loadedCount(dir.path()), 1); // the save wrote a good file
    QCOMPARE(out.text(), QByteArray());
    const QStringList copies = corruptCopies(dir.path(), p.fileName);
    QCOMPARE(copies.size(), 1);
    QFile copy(dir.filePath(copies.first()));
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QCOMPARE(copy.readAll(), months);
}

void TestStorageFiles::unwritableFolderReportsAndKeepsState_data()
{
    corruptFileIsKeptBeforeTheNextSave_data();
}

void TestStorageFiles::unwritableFolderReportsAndKeepsState()
{
    QFETCH(QString, store);
    const StoreProbe p = probe(store);
    QTemporaryDir dir;
    // A plain file where a folder should be: nothing below it can be made,
    // whoever runs the test.
    writeFile(dir.filePath(QStringLiteral("blocker")), "x");
    const QString folder = dir.filePath(QStringLiteral("blocker/Tintwright"));

    StdoutCapture out;
    QCOMPARE(p.addOneAndCount(folder), 1); // the change stays in memory
    const QByteArray printed = out.text();
    QVERIFY2(printed.startsWith(p.saveMessage.toUtf8()), printed.constData());
    QCOMPARE(printed.count('\n'), 1);
}

void TestStorageFiles::writableFileInAFixedFolderIsSavedInPlace_data()
{
    corruptFileIsKeptBeforeTheNextSave_data();
}

// A shared or managed folder whose files may be written but which takes no
// new ones.
void TestStorageFiles::writableFileInAFixedFolderIsSavedInPlace()
{
    if (::geteuid() == 0)
        QSKIP("permissions do not bind root");
    QFETCH(QString, store);
    const StoreProbe p = probe(store);
    QTemporaryDir dir;
    writeFile(dir.filePath(p.fileName), "[]");
    QFile folder(dir.path());
    const QFileDevice::Permissions before = folder.permissions();
    QVERIFY(folder.setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner));

    StdoutCapture out;
    QCOMPARE(p.addOneAndCount(dir.path()), 1);
    const QByteArray printed = out.text();
    QCOMPARE(p.loadedCount(dir.path()), 1);
    folder.setPermissions(before);
    QCOMPARE(printed, QByteArray());
}

void TestStorageFiles::strayTemporaryFilesAreRemoved_data()
{
    corruptFileIsKeptBeforeTheNextSave_data();
}

void TestStorageFiles::strayTemporaryFilesAreRemoved()
{
    QFETCH(QString, store);
    const StoreProbe p = probe(store);
    QTemporaryDir dir;
    writeFile(dir.filePath(p.fileName), "[]");
    // What a killed save leaves: the file's name, a dot and six letters of
    // both cases; six letters in one case may be the user's own word.
    const QStringList stray = {p.fileName + QStringLiteral(".AbCdEf"),
                               p.fileName + QStringLiteral(".zzzzzZ")};
    const QStringList kept = {p.fileName + QStringLiteral(".AbCdE1"),
                              p.fileName + QStringLiteral(".AbCdEfg"),
                              p.fileName + QStringLiteral(".backup"),
                              p.fileName + QStringLiteral(".BACKUP"),
                              p.fileName + QStringLiteral(".corrupt-20250314T092653Z"),
                              QStringLiteral("other.json.AbCdEf")};
    for (const QString &name : stray + kept)
        writeFile(dir.filePath(name), "[");
    QVERIFY(QDir(dir.path()).mkdir(p.fileName + QStringLiteral(".FolDer")));

    StdoutCapture out;
    QCOMPARE(p.loadedCount(dir.path()), 0);
    QCOMPARE(out.text(), QByteArray());
    QStringList left = QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    QStringList expected = kept + QStringList{p.fileName, p.fileName + QStringLiteral(".FolDer")};
    left.sort();
    expected.sort();
    QCOMPARE(left, expected);
}

void TestStorageFiles::defaultFolderIsTheUserDataFolder()
{
    QStandardPaths::setTestModeEnabled(true);
    const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString folder = base + QStringLiteral("/Tintwright");
    QDir(folder).removeRecursively();
    HistoryStorage history;
    PaletteStorage palettes;
    QCOMPARE(history.filePath(), folder + QStringLiteral("/history.json"));
    QCOMPARE(palettes.filePath(), folder + QStringLiteral("/palettes.json"));
    QVERIFY(QFileInfo(folder).isDir()); // made at construction
    QDir(folder).removeRecursively();
}

QTEST_GUILESS_MAIN(TestStorageFiles)
#include "tst_storagefiles.moc"
