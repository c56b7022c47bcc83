// A process killed while it saves leaves either the old file or the new one,
// never a mix, and the next start clears what the killed save left behind.
#include "storage/PaletteStorage.h"
#include "support/StdoutCapture.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

class TestCrashDuringSave : public QObject
{
    Q_OBJECT

private slots:
    void killedSaveLeavesAWholeFile()
    {
        QTemporaryDir dir;
        // Big enough that a save takes a while, so that kills land inside one.
        Palette big = Palette::create(QStringLiteral("Big"));
        for (int n = 0; n < 2000; ++n)
            big.colors.append(ColorItem::create(QStringLiteral("c"), n / 2000.0, 0.5, 0.5));
        writeFile(dir.filePath(QStringLiteral("palettes.json")), *RecordCoding::encodePalettes({big}).data);
        qsizetype colors = 2000;
        for (int round = 0; round < 12; ++round) {
            int saved[2];
            QVERIFY(::pipe(saved) == 0);
            std::fflush(stdout);
            const pid_t pid = ::fork();
            if (pid == 0) {
                PaletteStorage storage(dir.path());
                for (const QUuid id = storage.palettes().first().id;;) {
                    storage.addColor(ColorItem::create(QStringLiteral("more"), 0.1, 0.2, 0.3), id);
                    [[maybe_unused]] const ssize_t n = ::write(saved[1], "s", 1); // one save done
                }
            }
            // Killed after its first save, somewhere in a later one.
            char byte;
            QCOMPARE(::read(saved[0], &byte, 1), ssize_t(1));
            ::usleep(useconds_t(QRandomGenerator::global()->bounded(1000, 30000)));
            ::kill(pid, SIGKILL);
            ::close(saved[0]);
            ::close(saved[1]);
            ::waitpid(pid, nullptr, 0);

            StdoutCapture out;
            const PaletteStorage reloaded(dir.path());
            QCOMPARE(out.text(), QByteArray()); // decodes: not a half-written file
            QVERIFY(reloaded.palettes().first().colors.size() > colors);
            colors = reloaded.palettes().first().colors.size();
            QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("palettes.json")});
        }
    }
};

QTEST_GUILESS_MAIN(TestCrashDuringSave)
#include "tst_crashduringsave.moc"
