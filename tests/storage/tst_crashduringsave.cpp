// A process killed while it saves leaves either the old file or the new one,
// never a mix, and the next start clears what the killed save left behind.
#include "storage/PaletteStorage.h"
#include "support/StdoutCapture.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

class TestCrashDuringSave : public QObject
{
    Q_OBJECT

private slots:
    void killedSaveLeavesAWholeFile();
};

void TestCrashDuringSave::killedSaveLeavesAWholeFile()
{
    QTemporaryDir dir;
    // Big enough that a save takes a while, so that kills land inside one.
    Palette big = Palette::create(QStringLiteral("Big"));
    for (int n = 0; n < 2000; ++n)
        big.colors.append(ColorItem::create(QStringLiteral("c"), n / 2000.0, 0.5, 0.5));
    QFile file(dir.filePath(QStringLiteral("palettes.json")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(*RecordCoding::encodePalettes({big}).data);
    file.close();
    qsizetype colors = 2000;
    bool savedBeforeAKill = false;
    for (int round = 0; round < 12; ++round) {
        std::fflush(stdout);
        const pid_t pid = ::fork();
        if (pid == 0) {
            PaletteStorage storage(dir.path());
            const QUuid id = storage.palettes().first().id;
            for (;;)
                storage.addColor(ColorItem::create(QStringLiteral("more"), 0.1, 0.2, 0.3), id);
        }
        ::usleep(useconds_t(QRandomGenerator::global()->bounded(20000, 120000)));
        ::kill(pid, SIGKILL);
        ::waitpid(pid, nullptr, 0);

        StdoutCapture out;
        const PaletteStorage reloaded(dir.path());
        QCOMPARE(out.text(), QByteArray()); // decodes: not a half-written file
        QCOMPARE(reloaded.palettes().size(), 1);
        QVERIFY(reloaded.palettes().first().colors.size() >= colors);
        savedBeforeAKill = savedBeforeAKill || reloaded.palettes().first().colors.size() > colors;
        colors = reloaded.palettes().first().colors.size();
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("palettes.json")});
    }
    QVERIFY(savedBeforeAKill); // the kills came while it was saving
}

QTEST_GUILESS_MAIN(TestCrashDuringSave)
#include "tst_crashduringsave.moc"
