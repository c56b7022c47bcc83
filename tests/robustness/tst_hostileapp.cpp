// The real program, started on a data folder full of hostile files: it comes
// up, stays up, prints its one line per refused file and keeps each refused
// file aside untouched.
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

const QByteArray goodColor = R"({
    "id" : "6F1C1E2A-3B4C-4D5E-8F60-718293A4B5C6",
    "name" : "Picked Color",
    "red" : 0.9372549019607843,
    "green" : 0.26666666666666666,
    "blue" : 0.26666666666666666,
    "alpha" : 1,
    "dateAdded" : "2025-03-14T09:26:53Z"
  })";

} // namespace

class TestHostileApp : public QObject
{
    Q_OBJECT

private slots:
    void startsOnAHostileDataFolder_data();
    void startsOnAHostileDataFolder();
};

void TestHostileApp::startsOnAHostileDataFolder_data()
{
    QTest::addColumn<QByteArray>("history"); // "" for none, "<dir>" for a folder
    QTest::addColumn<QByteArray>("palettes");
    QTest::addColumn<QStringList>("expectedLines");

    const QStringList both{QStringLiteral("Failed to load history: "),
                           QStringLiteral("Failed to load palettes: ")};
    QTest::newRow("truncated and deeply nested")
        << QByteArray("[\n  " + goodColor.left(120)) << QByteArray(200000, '[') << both;
    QTest::newRow("wrong types and NaN")
        << QByteArray("[" + QByteArray(goodColor).replace("0.9372549019607843", "NaN") + "]")
        << QByteArray("[{\"id\": 1, \"name\": [], \"colors\": {}, \"dateCreated\": false}]") << both;
    QTest::newRow("folders in place of files") << QByteArray("<dir>") << QByteArray("<dir>") << both;
    QTest::newRow("invalid UTF-8 and a 50 MB file")
        << QByteArray("[" + QByteArray(goodColor).replace("Picked", "\xff\xfe\xc0\x80") + "]")
        << QByteArray("[" + QByteArray(50 * 1024 * 1024, ' ') + "{]") << both;
    QTest::newRow("odd but valid: huge components")
        << QByteArray("["
                      + QByteArray(goodColor)
                            .replace("0.9372549019607843", "1e308")
                            .replace("0.26666666666666666", "-123456789")
                      + "]")
        << QByteArray("[]") << QStringList();
}

void TestHostileApp::startsOnAHostileDataFolder()
{
    QFETCH(QByteArray, history);
    QFETCH(QByteArray, palettes);
    QFETCH(QStringList, expectedLines);

    QTemporaryDir home;
    const QString folder = home.filePath(QStringLiteral("data/Tintwright"));
    QVERIFY(QDir().mkpath(folder));
    const auto place = [&](const QString &name, const QByteArray &content) {
        if (content == "<dir>")
            QVERIFY(QDir().mkpath(folder + u'/' + name + QStringLiteral("/inside")));
        else if (!content.isEmpty())
            writeFile(folder + u'/' + name, content);
    };
    place(QStringLiteral("history.json"), history);
    place(QStringLiteral("palettes.json"), palettes);

    QProcess app;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_DATA_HOME"), home.filePath(QStringLiteral("data")));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.path());
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    app.setProcessEnvironment(environment);
    app.start(QStringLiteral(TINTWRIGHT_EXECUTABLE), {});
    QVERIFY(app.waitForStarted());

    // Up and still running two seconds after the files were read.
    QByteArray output;
    QDeadlineTimer deadline(20000);
    while (output.count('\n') < expectedLines.size() && !deadline.hasExpired()
           && app.state() == QProcess::Running) {
        app.waitForReadyRead(200);
        output += app.readAllStandardOutput();
    }
    QTest::qWait(2000);
    output += app.readAllStandardOutput();
    const bool running = app.state() == QProcess::Running;
    app.kill();
    app.waitForFinished();
    QVERIFY2(running, app.readAllStandardError().right(2000).constData());

    const QStringList lines = QString::fromUtf8(output).split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), expectedLines.size());
    for (const QString &prefix : expectedLines) {
        const QStringList matching = lines.filter(prefix);
        QCOMPARE(matching.size(), 1);
        QVERIFY(matching.first().startsWith(prefix));
    }

    // Every refused file is kept aside exactly as it was.
    for (const auto &[name, content] : {std::pair{QStringLiteral("history.json"), history},
                                        std::pair{QStringLiteral("palettes.json"), palettes}}) {
        const QStringList aside = QDir(folder).entryList({name + QStringLiteral(".corrupt-*")},
                                                         QDir::AllEntries | QDir::NoDotAndDotDot);
        const bool refused = !lines.filter(QStringLiteral("load ") + name.chopped(5)).isEmpty();
        QCOMPARE(aside.size(), refused ? 1 : 0);
        if (!refused)
            continue;
        if (content == "<dir>")
            QVERIFY(QFileInfo(folder + u'/' + aside.first() + QStringLiteral("/inside")).isDir());
        else
            QVERIFY(readFile(folder + u'/' + aside.first()) == content);
    }
}

QTEST_GUILESS_MAIN(TestHostileApp)
#include "tst_hostileapp.moc"
