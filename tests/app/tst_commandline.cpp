// The process's edges: the options it reads, one instance per data folder
// (however the folder is reached), a later launch handing over to the
// running one, and `tintwright --pick` answered by a running instance.
#include "app/CommandLine.h"
#include "app/SingleInstance.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

Q_DECLARE_METATYPE(CommandLine::Action)
Q_DECLARE_METATYPE(Notation)
Q_DECLARE_METATYPE(SingleInstance::PickReply)

namespace {

// A socket file as an instance that is gone leaves it (bound, refusing
// connections), or one that hangs and never answers (listening); or a
// connection to whichever listens there.
enum class Raw { Bound, Listening, Connected };
int rawSocket(const QString &path, Raw what)
{
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path - 1);
    const auto *at = reinterpret_cast<sockaddr *>(&address);
    if (what == Raw::Connected
            ? ::connect(fd, at, sizeof address) != 0
            : ::bind(fd, at, sizeof address) != 0 || (what == Raw::Listening && ::listen(fd, 4)))
        return -1;
    return fd;
}

SingleInstance::PickReply picked(std::initializer_list<double> reds)
{
    PickResult result{PickResult::Outcome::Picked, {}, {}};
    for (const double red : reds)
        result.colors.append(ColorItem::create(QStringLiteral("Picked Color"), red, 0.5, 1.0));
    return {false, result};
}

} // namespace

class TestCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // Shared with the command, which finds the running instance there.
        QVERIFY(m_runtime.isValid());
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime.path()));
    }

    void parse_data()
    {
        using Action = CommandLine::Action;
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<Action>("action");
        QTest::addColumn<Notation>("notation");
        QTest::addColumn<bool>("copy");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("nothing") << QStringList{} << Action::ShowWindow << Notation::Hex << true << 0;
        QTest::newRow("pick cmyk, no copy") << QStringList{"--no-copy", "--format", "cmyk", "--pick"}
                                            << Action::Pick << Notation::Cmyk << false << 0;
        QTest::newRow("pick oklch with =")
            << QStringList{"--pick", "--format=oklch"} << Action::Pick << Notation::Oklch << true << 0;
        QTest::newRow("help") << QStringList{"--help"} << Action::Exit << Notation::Hex << true << 0;
        QTest::newRow("format without pick")
            << QStringList{"--format", "rgb"} << Action::Exit << Notation::Hex << true << 2;
        QTest::newRow("unknown notation")
            << QStringList{"--pick", "--format", "HEX"} << Action::Exit << Notation::Hex << true << 2;
        QTest::newRow("unknown option") << QStringList{"--pik"} << Action::Exit << Notation::Hex << true << 2;
    }

    void parse()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        const CommandLine command = CommandLine::parse(QStringList{"tintwright"} + arguments);
        QTEST(command.action, "action");
        QTEST(command.notation, "notation");
        QTEST(command.copy, "copy");
        QCOMPARE(command.exitCode, exitCode);
        if (exitCode)
            QCOMPARE(command.message.count(u'\n'), 1); // one line on standard error
    }

    void serverNameIsTheRealFolder_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::addColumn<bool>("same");
        const auto row = [](const char *name, const char *first, const char *second, bool same) {
            QTest::newRow(name) << first << second << same;
        };
        row("trailing slash and dots", "real/Tintwright/", "real/x/../Tintwright", true);
        row("other folder", "real/Tintwright", "real/Other", false);
        // One folder reached by two paths is one instance: two would
        // overwrite each other's palettes.
        row("not made yet, through a link", "real/new/Tintwright", "link/new/Tintwright", true);
    }

    void serverNameIsTheRealFolder()
    {
        QFETCH(QString, first);
        QFETCH(QString, second);
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("real/Tintwright")));
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("real")), dir.filePath(QStringLiteral("link"))));
        const QString a = SingleInstance::serverNameFor(dir.filePath(first));
        QTEST(a == SingleInstance::serverNameFor(dir.filePath(second)), "same");
        QVERIFY(a.startsWith(m_runtime.path() + QLatin1Char('/')));
        QVERIFY(a.toUtf8().size() < 100); // room in a Unix socket path
    }

    void laterLaunchHandsOverWithItsToken()
    {
        QTemporaryDir data;
        SingleInstance first(data.path());
        QCOMPARE(first.claimOrHandOver(), SingleInstance::Outcome::Primary);
        QSignalSpy requests(&first, &SingleInstance::activationRequested);
        qputenv("XDG_ACTIVATION_TOKEN", "kwin-4711_TIME123");
        // Its hand-over blocks; the first answers from this event loop.
        int outcome = -1;
        QScopedPointer<QThread> later(
            QThread::create([&] { outcome = int(SingleInstance(data.path()).claimOrHandOver(3000)); }));
        later->start();
        QTRY_VERIFY_WITH_TIMEOUT(later->isFinished(), 5000);
        qunsetenv("XDG_ACTIVATION_TOKEN");
        QCOMPARE(outcome, int(SingleInstance::Outcome::HandedOver));
        QTRY_COMPARE(requests.count(), 1);
        QCOMPARE(requests.at(0).at(0).toString(), QStringLiteral("kwin-4711_TIME123"));
    }

    void leftSocket_data()
    {
        QTest::addColumn<bool>("listening");
        QTest::addColumn<SingleInstance::Outcome>("outcome");
        QTest::newRow("crashed owner: taken over") << false << SingleInstance::Outcome::Primary;
        // Left alone: that instance may still be saving.
        QTest::newRow("silent owner: reported") << true << SingleInstance::Outcome::NoAnswer;
    }

    void leftSocket()
    {
        QFETCH(bool, listening);
        QTemporaryDir data;
        const QString name = SingleInstance::serverNameFor(data.path());
        const int fd = rawSocket(name, listening ? Raw::Listening : Raw::Bound);
        QVERIFY(fd >= 0);
        if (!listening)
            ::close(fd);
        SingleInstance next(data.path());
        QTEST(next.claimOrHandOver(200), "outcome");
        // Someone listens there now: the taken-over socket, or the silent one.
        const int probe = rawSocket(name, Raw::Connected);
        QVERIFY(probe >= 0);
        ::close(probe);
        if (listening)
            ::close(fd);
    }

    // The exit code and output for each reply of a running instance.
    void runningInstanceAnswers_data()
    {
        QTest::addColumn<SingleInstance::PickReply>("reply");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("printed");
        QTest::addColumn<QString>("complaint"); // a word of the one line on standard error; empty: none
        QTest::newRow("picked") << picked({0.0}) << 0 << QByteArray("cmyk(100%, 50%, 0%, 0%)\n") << "";
        QTest::newRow("picked twice, a line each")
            << picked({0.0, 1.0}) << 0 << QByteArray("cmyk(100%, 50%, 0%, 0%)\ncmyk(0%, 50%, 0%, 0%)\n")
            << "";
        const auto ended = [](PickResult::Outcome outcome, const char *why) {
            return SingleInstance::PickReply{false, {outcome, {}, QString::fromLatin1(why)}};
        };
        QTest::newRow("cancelled") << SingleInstance::PickReply{} << 1 << QByteArray() << "";
        QTest::newRow("ended by the portal")
            << ended(PickResult::Outcome::Cancelled, "response 2") << 1 << QByteArray() << "response 2";
        QTest::newRow("busy") << SingleInstance::PickReply{true, {}} << 1 << QByteArray() << "picking";
        QTest::newRow("unavailable") << ended(PickResult::Outcome::Unavailable, "no portal") << 3
                                     << QByteArray() << "portal";
    }

    void runningInstanceAnswers()
    {
        QFETCH(SingleInstance::PickReply, reply);
        QFETCH(QString, complaint);
        QTemporaryDir dataHome;
        SingleInstance running(dataHome.filePath(QStringLiteral("Tintwright")));
        QCOMPARE(running.claimOrHandOver(), SingleInstance::Outcome::Primary);
        QStringList requests;
        connect(&running, &SingleInstance::pickRequested, this,
                [&](Notation notation, bool copy, const SingleInstance::PickAnswer &answer) {
                    requests.append(Notations::name(notation) + (copy ? " copy" : " no-copy"));
                    answer(reply);
                });
        QProcess command;
        command.start("env",
                      {"XDG_DATA_HOME=" + dataHome.path(), TINTWRIGHT_BINARY, "--pick", "--format", "cmyk",
                       "--no-copy"});
        QSignalSpy finished(&command, &QProcess::finished);
        QVERIFY(finished.wait(10000));
        QCOMPARE(requests, QStringList{"cmyk no-copy"});
        QTEST(command.exitCode(), "exitCode");
        QTEST(command.readAllStandardOutput(), "printed");
        const QString errors = QString::fromUtf8(command.readAllStandardError());
        QCOMPARE(errors.count(u'\n'), complaint.isEmpty() ? 0 : 1);
        QVERIFY2(errors.contains(complaint), qPrintable(errors));
    }

    // A pair checked in a script: no display, a JSON report, the exit
    // status saying whether it reaches the required level.
    void contrastCommand_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("report"); // `key=value` pairs the report holds, by JSON pointer
        QTest::newRow("gray on white")
            << QStringList{"#888888", "#FFFFFF", "--require", "AA-large"} << 0
            << "/ratio=3.54 /wcag=AA Large /apca=63.1 /apcaUse=Content text "
               "/suggestions/AA/foreground/hex=#767676 "
               "/suggestions/AA/foreground/ratio=4.54 /suggestions/AAA/background=null "
               "/simulated/achromatopsia/ratio=3.54";
        QTest::newRow("notations, passing")
            << QStringList{"rgb(0, 0, 0)", "hsl(0, 0%, 100%)", "--require", "AAA"} << 0
            << "/foreground=#000000 /background=#FFFFFF /ratio=21 "
               "/suggestions/AA=null /apca=106";
        QTest::newRow("red on black, seen") << QStringList{"#FF3333", "#000000"} << 0
                                            << "/wcag=AA /simulated/protanopia/foreground=#766A30 "
                                               "/simulated/protanopia/ratio=3.87";
        QTest::newRow("short of AA") << QStringList{"#777777", "#FFFFFF", "--require", "AA"} << 1
                                     << "/ratio=4.48";
        QTest::newRow("unreadable") << QStringList{"#777777", "grey"} << 2 << "";
        QTest::newRow("unknown level") << QStringList{"#000000", "#FFFFFF", "--require", "A"} << 2 << "";
    }
    void contrastCommand()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, report);
        QProcess command; // no display of any kind
        command.start("env",
                      QStringList{"-u", "DISPLAY", "-u", "WAYLAND_DISPLAY", "-u", "QT_QPA_PLATFORM",
                                  TINTWRIGHT_BINARY, "--contrast"}
                          + arguments);
        QVERIFY(command.waitForFinished(10000));
        QCOMPARE(command.exitCode(), exitCode);
        const QString errors = QString::fromUtf8(command.readAllStandardError());
        QCOMPARE(errors.count(u'\n'), exitCode == 2 ? 1 : 0);
        if (exitCode == 2)
            return;
        QJsonParseError error;
        const QJsonDocument json = QJsonDocument::fromJson(command.readAllStandardOutput(), &error);
        QVERIFY2(json.isObject(), qPrintable(error.errorString()));
        static const QRegularExpression pair(QStringLiteral("(/\\S+)=(.*?)(?= /|$)"));
        for (const QRegularExpressionMatch &match : pair.globalMatch(report)) {
            QJsonValue value = json.object();
            for (const QString &key : match.captured(1).split(u'/', Qt::SkipEmptyParts))
                value = value[key];
            const QString shown = value.isString() ? value.toString()
                : value.isNull()                   ? QStringLiteral("null")
                                                   : QString::number(value.toDouble());
            QCOMPARE(match.captured(1) + u'=' + shown, match.captured(0));
        }
    }

private:
    QTemporaryDir m_runtime;
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
