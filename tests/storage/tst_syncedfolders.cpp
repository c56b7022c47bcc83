// One data folder on two computers, and other programs writing it: the
// three-way merge rule, the save that never replaces a version it has not
// seen, conflict copies, half-written files, and two stores kept in step by
// a sync tool.
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"
#include "storage/RecordFile.h"
#include "storage/RecordMerge.h"

#include "TwoComputers.h"
#include "model/RecordCoding.h"
#include "support/StdoutCapture.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <cstdio>

namespace {

// "3 1": colors by digit, the digit standing for id, name and time.
QList<ColorItem> colorsOf(QStringView text)
{
    QList<ColorItem> colors;
    for (const QChar digit : text) {
        if (!digit.isDigit())
            continue;
        const int n = digit.digitValue();
        ColorItem item = ColorItem::create(QStringLiteral("c%1").arg(n), n / 10.0, 0.5, 0.5);
        item.id = QUuid(0xC0, 0, 0, 0, 0, 0, 0, 0, 0, 0, uchar(n));
        item.dateAdded = QDateTime::fromSecsSinceEpoch(1700000000 + n, Qt::UTC);
        colors.append(item);
    }
    return colors;
}

// "a:Red=1,2 b:Blue=": palettes by letter, with a name and colors.
QList<Palette> palettesOf(const QString &text)
{
    QList<Palette> palettes;
    for (const QString &word : text.split(u' ', Qt::SkipEmptyParts)) {
        Palette palette = Palette::create(word.section(u'=', 0, 0).mid(2));
        palette.id = QUuid(0xA0, 0, 0, 0, 0, 0, 0, 0, 0, 0, uchar(word.at(0).unicode()));
        palette.dateCreated = QDateTime::fromSecsSinceEpoch(1700000000, Qt::UTC);
        palette.colors = colorsOf(word.section(u'=', 1));
        palettes.append(palette);
    }
    return palettes;
}

QByteArray fileOf(const QString &palettes)
{
    return *RecordCoding::encodePalettes(palettesOf(palettes)).data;
}

QString textOf(const QList<ColorItem> &colors)
{
    QString text;
    for (const ColorItem &item : colors)
        text += item.name.back();
    return text;
}

QString textOf(const QList<Palette> &palettes)
{
    QStringList words;
    for (const Palette &palette : palettes)
        words.append(QChar(palette.id.data4[7]) + u':' + palette.name + u'=' + textOf(palette.colors));
    return words.join(u' ');
}

// What another program writes: a new file renamed over the old, or the old
// one rewritten in place and left cut short.
void writeOver(const QString &path, const QByteArray &bytes, bool halfWritten)
{
    const QString temporary = path + QStringLiteral(".theirs");
    writeFile(halfWritten ? path : temporary, halfWritten ? bytes.left(bytes.size() / 2) : bytes);
    if (!halfWritten)
        QCOMPARE(std::rename(QFile::encodeName(temporary).constData(), QFile::encodeName(path).constData()),
                 0);
}

// A copy written on the other side `secondsAgo`, put in place as a sync
// tool does: with the time it was written, renamed in whole.
void placeCopy(const QString &path, const QByteArray &bytes, int secondsAgo)
{
    QFile copy(path + QStringLiteral(".part"));
    QVERIFY(copy.open(QIODevice::WriteOnly) && copy.write(bytes) == bytes.size() && copy.flush());
    QVERIFY(copy.setFileTime(QDateTime::currentDateTimeUtc().addSecs(-secondsAgo),
                             QFileDevice::FileModificationTime)
            && copy.rename(path));
}

} // namespace

class TestSyncedFolders : public QObject
{
    Q_OBJECT

private slots:
    void mergeRule_data()
    {
        QTest::addColumn<QString>("base"); // "-": none known
        QTest::addColumn<QString>("mine");
        QTest::addColumn<QString>("theirs");
        QTest::addColumn<bool>("theirsNewer");
        QTest::addColumn<QString>("merged");
        QTest::addColumn<QString>("summary");
        const auto row = [](const char *name, const char *base, const char *mine, const char *theirs,
                            bool newer, const char *merged, const char *summary) {
            QTest::newRow(name) << base << mine << theirs << newer << merged << summary;
        };
        row("unchanged", "a:A=1", "a:A=1", "a:A=1", false, "a:A=1", "0 palettes and 0 colors");
        row("colors added on both sides", "a:A=1", "a:A=12", "a:A=13", false, "a:A=123",
            "0 palettes and 1 color");
        row("palettes added on both sides", "a:A=", "a:A= b:B=", "a:A= c:C=1", false, "a:A= b:B= c:C=1",
            "1 palette and 1 color");
        row("color removed there", "a:A=12", "a:A=12", "a:A=1", false, "a:A=1",
            "0 palettes and 0 colors; 1 color stayed deleted");
        row("color removed here", "a:A=12", "a:A=1", "a:A=12", false, "a:A=1",
            "0 palettes and 0 colors; 1 color stayed deleted");
        row("palette deleted there", "a:A=1 b:B=2", "a:A=1 b:B=2", "a:A=1", false, "a:A=1",
            "0 palettes and 0 colors; 1 palette stayed deleted");
        row("palette deleted there, changed here", "a:A=1 b:B=2", "a:A=1 b:B=23", "a:A=1", false,
            "a:A=1 b:B=23", "0 palettes and 0 colors; \"B\" came back with its changes");
        row("palette deleted here, changed there", "a:A=1 b:B=2", "a:A=1", "a:A=1 b:C=2", false,
            "a:A=1 b:C=2", "0 palettes and 0 colors; \"C\" came back with its changes");
        row("renamed there", "a:A=1", "a:A=12", "a:T=1", false, "a:T=12",
            "0 palettes and 0 colors; renamed \"A\" to \"T\"");
        row("renamed here", "a:A=1", "a:M=1", "a:A=13", true, "a:M=13", "0 palettes and 1 color");
        row("renamed on both, theirs newer", "a:A=", "a:M=", "a:T=", true,
            "a:T=", "0 palettes and 0 colors; renamed \"M\" to \"T\"");
        row("renamed on both, mine newer", "a:A=", "a:M=", "a:T=", false, "a:M=", "0 palettes and 0 colors");
        row("no base: nothing dropped, my names", "-", "a:M=1", "a:T=2 b:B=", true,
            "a:M=12 b:B=", "1 palette and 1 color");
        row("history cleared here", "21", "", "321", false, "3", "1 color; 2 colors stayed deleted");
        row("history cleared there", "21", "4321", "", false, "43", "0 colors; 2 colors stayed deleted");
        row("histories without a base", "-", "2", "31", false, "231", "2 colors");
    }
    void mergeRule()
    {
        QFETCH(QString, base);
        QFETCH(QString, mine);
        QFETCH(QString, theirs);
        QFETCH(bool, theirsNewer);
        RecordMerge::Report report;
        const bool palettes = QString(mine + theirs).contains(u':') || base.contains(u':');
        const QString merged = palettes
            ? textOf(RecordMerge::palettes(base == u"-" ? std::nullopt : std::optional(palettesOf(base)),
                                           palettesOf(mine), palettesOf(theirs), theirsNewer, report))
            : textOf(RecordMerge::colors(base == u"-" ? std::nullopt : std::optional(colorsOf(base)),
                                         colorsOf(mine), colorsOf(theirs), report));
        QTEST(merged, "merged");
        // The line is told as "<taken>; <notes>".
        QFETCH(QString, summary);
        const qsizetype notes = summary.indexOf(u';');
        QCOMPARE(report.summary(palettes, QStringLiteral("c.json")),
                 QStringLiteral("Merged %1 from \"c.json\"%2")
                     .arg(summary.left(notes), notes < 0 ? QString() : summary.mid(notes)));
    }

    // Whether another side's version shows a change made here, so that the
    // version after it can be its base.
    void showsAChange_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("theirs");
        QTest::addColumn<bool>("shown");
        const auto row = [](const char *name, const char *before, const char *after, const char *theirs,
                            bool shown) { QTest::newRow(name) << before << after << theirs << shown; };
        row("added, and there", "a:A=1", "a:A=12", "a:A=123", true);
        row("added, not there", "a:A=1", "a:A=12", "a:A=1", false);
        // Theirs may come from an older version that had it under another name.
        row("added, there under another name", "a:A=1", "a:A=1 b:B=", "a:A=1 b:C=", false);
        row("renamed, old name there", "a:A=1", "a:B=1", "a:A=1", false);
        row("only deleted, gone there, the rest as it was", "a:A=1 b:B=", "a:A=1", "a:A=1 c:C=", true);
        row("only deleted, still there", "a:A=1 b:B=", "a:A=1", "a:A=1 b:B=", false);
        row("only deleted, the rest changed there", "a:A=1 b:B=", "a:A=1", "a:R=1", false);
        row("nothing changed", "a:A=1", "a:A=1", "a:A=1", false);
    }
    void showsAChange()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(QString, theirs);
        QTEST(RecordMerge::shows(palettesOf(before), palettesOf(after), palettesOf(theirs)), "shown");
    }

    // Another program's version lands between the save's last look and
    // its replacing the file: it is taken in, not overwritten.
    void saveNeverReplacesAnUnseenVersion_data()
    {
        QTest::addColumn<bool>("halfWritten");
        QTest::newRow("renamed into place") << false;
        QTest::newRow("cut short in place") << true;
    }
    void saveNeverReplacesAnUnseenVersion()
    {
        QFETCH(bool, halfWritten);
        QTemporaryDir dir, elsewhere;
        PaletteStorage storage(dir.path());
        const Palette mine = storage.createPalette(QStringLiteral("mine"));
        QFile::copy(storage.filePath(), elsewhere.filePath(QStringLiteral("palettes.json")));
        const Palette theirs = PaletteStorage(elsewhere.path()).createPalette(QStringLiteral("theirs"));
        const QByteArray theirFile = readFile(elsewhere.filePath(QStringLiteral("palettes.json")));
        int saves = 0;
        RecordFile::beforeReplace = [&](const QString &path) {
            if (saves++ == 0)
                writeOver(path, theirFile, halfWritten);
        };
        StdoutCapture out;
        const Palette later = storage.createPalette(QStringLiteral("later"));
        RecordFile::beforeReplace = nullptr;
        QCOMPARE(saves, halfWritten ? 1 : 2); // saved again with theirs taken in
        QStringList expected{mine.name, later.name};
        if (!halfWritten)
            expected.append(theirs.name);
        QStringList onDisk;
        for (const Palette &palette :
             RecordCoding::decodePalettes(readFile(storage.filePath())).value.value_or(QList<Palette>()))
            onDisk.append(palette.name);
        QCOMPARE(onDisk, expected);
        // What could not be read is kept beside the file, as at start.
        const QStringList aside = QDir(dir.path()).entryList({QStringLiteral("palettes.json.corrupt-*")});
        QCOMPARE(aside.size(), halfWritten ? 1 : 0);
        QCOMPARE(out.text().startsWith("Failed to load palettes: "), halfWritten);
    }

    // A conflict copy written before this computer read a later version of
    // the other side's does not grow from that version: what it lacks of
    // that version is not deleted there.
    void lateCopyOfAnEarlierVersion()
    {
        QTemporaryDir here, there;
        const QString file = QStringLiteral("/palettes.json");
        PaletteStorage(here.path()).createPalette(QStringLiteral("A"));
        QVERIFY(QFile::copy(here.path() + file, there.path() + file));
        PaletteStorage other(there.path());
        other.createPalette(QStringLiteral("Z"));
        const QByteArray earlier = readFile(there.path() + file);
        other.createPalette(QStringLiteral("Q"));
        writeOver(here.path() + file, readFile(there.path() + file), false);
        QCOMPARE(PaletteStorage(here.path()).palettes().size(), 3);
        placeCopy(here.path() + QStringLiteral("/palettes.sync-conflict-20260101-000000-OTHER.json"), earlier,
                  1);
        StdoutCapture out;
        QCOMPARE(PaletteStorage(here.path()).palettes().size(), 3);
        QVERIFY(out.text().startsWith("Merged 0 palettes and 0 colors"));
    }

    // Each tool's name for the copy it leaves; read at start or while running,
    // merged into the file once, and said in one line.
    void conflictCopyIsMergedOnce_data()
    {
        QTest::addColumn<QString>("copyName");
        QTest::addColumn<bool>("whileRunning");
        QTest::newRow("syncthing, at start")
            << "palettes.sync-conflict-20250102-101010-ABCDEFG.json" << false;
        QTest::newRow("dropbox, while running") << "palettes (Ann's conflicted copy 2025-01-02).json" << true;
        QTest::newRow("nextcloud, at start") << "palettes (conflicted copy 2025-01-02 101010).json" << false;
    }
    void conflictCopyIsMergedOnce()
    {
        QFETCH(QString, copyName);
        QFETCH(bool, whileRunning);
        QTemporaryDir dir;
        writeFile(dir.filePath(QStringLiteral("palettes.json")), fileOf(QStringLiteral("a:A=13")));
        StdoutCapture out;
        const auto check = [&](const PaletteStorage &storage) {
            // The main file's order first.
            QCOMPARE(textOf(storage.palettes()), QStringLiteral("a:A=132 b:B="));
            QCOMPARE(readFile(storage.filePath()), fileOf(textOf(storage.palettes())));
            QVERIFY(out.text().count('\n') == 1 && out.text().contains(copyName.toUtf8()));
            QCOMPARE(QDir(dir.path()).entryList({QStringLiteral("*.merged")}),
                     QStringList(copyName + ".merged"));
        };
        std::unique_ptr<PaletteStorage> running;
        if (whileRunning)
            running = std::make_unique<PaletteStorage>(dir.path());
        placeCopy(dir.filePath(copyName), fileOf(QStringLiteral("a:A=12 b:B=")), 60);
        if (running) {
            QTRY_COMPARE(running->palettes().size(), 2);
            check(*running);
        }
        check(PaletteStorage(dir.path()));
        check(PaletteStorage(dir.path())); // not merged a second time
    }

    // A file another program is still writing is waited for, and one left
    // cut short is kept aside without losing what the list shows.
    void halfWrittenFileIsWaitedFor_data()
    {
        QTest::addColumn<bool>("completed");
        QTest::newRow("completed a moment later") << true;
        QTest::newRow("left truncated") << false;
    }
    void halfWrittenFileIsWaitedFor()
    {
        QFETCH(bool, completed);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("palettes.json"));
        writeFile(path, fileOf(QStringLiteral("a:A=1")));
        PaletteStorage storage(dir.path());
        const QByteArray theirs = fileOf(QStringLiteral("a:A=1 b:B=2"));
        StdoutCapture out;
        writeOver(path, theirs, true);
        QTest::qWait(500);
        QCOMPARE(textOf(storage.palettes()), QStringLiteral("a:A=1"));
        const QStringList corrupt = {QStringLiteral("palettes.json.corrupt-*")};
        if (completed) {
            writeFile(path, theirs);
            QTRY_COMPARE(storage.palettes().size(), 2);
            QTest::qWait(1000);
            QCOMPARE(out.text(), QByteArray());
            QCOMPARE(QDir(dir.path()).entryList(corrupt), QStringList());
            QCOMPARE(readFile(path), theirs);
            return;
        }
        QTRY_VERIFY(!out.text().isEmpty());
        QVERIFY(out.text().startsWith("Failed to load palettes: ") && out.text().count('\n') == 1);
        QCOMPARE(QDir(dir.path()).entryList(corrupt).size(), 1);
        QCOMPARE(textOf(storage.palettes()), QStringLiteral("a:A=1"));
        QTRY_COMPARE(readFile(path), fileOf(QStringLiteral("a:A=1")));
    }

    // A store takes in another's saves, and is not told twice of its own.
    void ownSavesAreNotReloaded()
    {
        QTemporaryDir dir;
        HistoryStorage storage(dir.path());
        QSignalSpy changed(&storage, &HistoryStorage::colorsChanged);
        storage.addColor(colorsOf(u"1").first());
        QTest::qWait(400);
        QCOMPARE(changed.size(), 1);
        HistoryStorage(dir.path()).addColor(colorsOf(u"4").first());
        QTRY_COMPARE(storage.colors().size(), 2);
        QCOMPARE(changed.size(), 2);
    }

    // Each side changes its own palettes: nothing made is lost and nothing
    // deleted comes back, however the two sides' saves cross.
    void twoComputersOnOneFolder()
    {
        TwoComputers computers(7, 250, 0);
        computers.setStepwise(true);
        {
            StdoutCapture out; // the merges' lines
            for (int round = 0; round < 3; ++round)
                computers.round(25, 0);
        }
        const TwoComputers::Figures &f = computers.figures();
        QVERIFY2(f.faults.isEmpty(), qPrintable(f.faults.join(u'\n')));
        QVERIFY(f.conflicts > 0);
    }
};

QTEST_GUILESS_MAIN(TestSyncedFolders)
#include "tst_syncedfolders.moc"
