// Kills a process that keeps saving palettes and history (SIGKILL, at random
// moments, hundreds of times) and checks after every kill that both files
// load, without a message, and hold exactly the content before or after the
// step that was under way: never a mix, never a loss.
#include "SaveSteps.h"

#include "model/RecordCoding.h"
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"
#include "support/StdoutCapture.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/types.h>
#include <unistd.h>

namespace {

// The sanitizer pass (scripts/sanitize-tests.sh) kills a quarter as often.
const int scaleDown = qEnvironmentVariableIsSet("TINTWRIGHT_SANITIZER_RUN") ? 4 : 1;
const int wantedKills = 400 / scaleDown;
const int minimumKills = 300 / scaleDown;
constexpr qint64 timeBudgetMs = 50000;

// The last step the child reported as done, or -1 when it reported none.
int lastReportedStep(const QByteArray &output)
{
    static const QRegularExpression done(QStringLiteral("done (\\d+)\\n"));
    int last = -1;
    for (const QRegularExpressionMatch &match : done.globalMatch(QString::fromLatin1(output)))
        last = match.captured(1).toInt();
    return last;
}

} // namespace

class TestKillDuringSave : public QObject
{
    Q_OBJECT

private slots:
    void filesHoldTheOldOrTheNewContent();
};

void TestKillDuringSave::filesHoldTheOldOrTheNewContent()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString folder = dir.path();

    SaveSteps::Library model = SaveSteps::baseline();
    {
        QFile file(folder + QStringLiteral("/palettes.json"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(*RecordCoding::encodePalettes(model.palettes).data);
    }

    const quint32 seed = QRandomGenerator::system()->generate();
    QRandomGenerator random(seed);
    qInfo("random seed %u", seed);

    int completed = 0; // the step the files are known to hold
    int kills = 0, killsWithProgress = 0, stepsSavedUnreported = 0, leftovers = 0;
    QElapsedTimer elapsed;
    elapsed.start();
    while (kills < wantedKills && elapsed.elapsed() < timeBudgetMs) {
        QProcess child;
        child.setProcessChannelMode(QProcess::SeparateChannels);
        child.start(QStringLiteral(TINTWRIGHT_SAVE_CHILD), {folder, QString::number(completed)});
        QVERIFY(child.waitForStarted());
        QByteArray output;
        while (!output.contains("ready\n")) {
            QVERIFY2(child.waitForReadyRead(10000), "the child did not start saving");
            output += child.readAllStandardOutput();
        }
        // Anywhere from right away to several complete saves later.
        ::usleep(random.bounded(0u, 25000u));
        ::kill(pid_t(child.processId()), SIGKILL);
        QVERIFY(child.waitForFinished(10000));
        output += child.readAllStandardOutput();
        ++kills;
        QVERIFY2(!output.contains("Failed"), output.constData());

        const int reported = std::max(lastReportedStep(output), completed);
        if (reported > completed)
            ++killsWithProgress;
        for (int step = completed + 1; step <= reported; ++step)
            SaveSteps::apply(step, model);
        SaveSteps::Library next = model;
        SaveSteps::apply(reported + 1, next);

        // A kill between writing a temporary file and renaming it leaves the
        // file behind; the stores remove it when they load.
        const auto strayFiles = [&folder] {
            return QDir(folder)
                .entryList(QDir::AllEntries | QDir::NoDotAndDotDot)
                .filter(QRegularExpression(QStringLiteral("^(?!palettes\\.json$|history\\.json$)")));
        };
        leftovers += strayFiles().size();
        StdoutCapture capture;
        const PaletteStorage palettes(folder);
        const HistoryStorage history(folder);
        QCOMPARE(capture.text(), QByteArray());
        const bool palettesOld = SaveSteps::samePalettes(palettes.palettes(), model.palettes);
        const bool palettesNew = SaveSteps::samePalettes(palettes.palettes(), next.palettes);
        const bool historyOld = history.colors() == model.history;
        const bool historyNew = history.colors() == next.history;
        QVERIFY2(palettesOld || palettesNew,
                 qPrintable(QStringLiteral("palettes after step %1").arg(reported)));
        QVERIFY2(historyOld || historyNew, qPrintable(QStringLiteral("history after step %1").arg(reported)));

        // The step under way changes one file; when that file already holds
        // its result, the kill came between the save and the report.
        const bool nextSaved =
            (reported + 1) % 2 == 0 ? palettesNew && !palettesOld : historyNew && !historyOld;
        completed = reported;
        if (nextSaved) {
            ++stepsSavedUnreported;
            completed = reported + 1;
            model = next;
        }
        QVERIFY2(strayFiles().isEmpty(), qPrintable(strayFiles().join(u' ')));
    }
    qInfo("%d kills in %lld ms, %d after at least one completed step, %d between a save and its report, "
          "%d steps completed in all, %d temporary files left behind and removed at the next load",
          kills, elapsed.elapsed(), killsWithProgress, stepsSavedUnreported, completed, leftovers);
    QVERIFY2(kills >= minimumKills,
             qPrintable(QStringLiteral("only %1 kills in the time budget").arg(kills)));
}

QTEST_GUILESS_MAIN(TestKillDuringSave)
#include "tst_killduringsave.moc"
