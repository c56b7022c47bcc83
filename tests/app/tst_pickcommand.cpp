#include "app/CommandLine.h"
#include "app/SingleInstance.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(CommandLine::Action)
Q_DECLARE_METATYPE(PickFormat)

class TestPickCommand : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // Shared with the command, which finds the running instance there.
        QVERIFY(m_runtime.isValid());
        QFile::setPermissions(m_runtime.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime.path()));
    }

    void parse_data()
    {
        using Action = CommandLine::Action;
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<Action>("action");
        QTest::addColumn<PickFormat>("format");
        QTest::addColumn<bool>("copy");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("nothing") << QStringList{} << Action::ShowWindow << PickFormat::Hex << true << 0;
        QTest::newRow("pick cmyk, no copy") << QStringList{"--no-copy", "--format", "cmyk", "--pick"}
                                            << Action::Pick << PickFormat::Cmyk << false << 0;
        QTest::newRow("pick oklch with =")
            << QStringList{"--pick", "--format=oklch"} << Action::Pick << PickFormat::Oklch << true << 0;
        QTest::newRow("help") << QStringList{"--help"} << Action::Exit << PickFormat::Hex << true << 0;
        QTest::newRow("format without pick")
            << QStringList{"--format", "rgb"} << Action::Exit << PickFormat::Hex << true << 2;
        QTest::newRow("unknown notation")
            << QStringList{"--pick", "--format", "HEX"} << Action::Exit << PickFormat::Hex << true << 2;
        QTest::newRow("unknown option")
            << QStringList{"--pik"} << Action::Exit << PickFormat::Hex << true << 2;
    }

    void parse()
    {
        QFETCH(QStringList, arguments);
        QFETCH(CommandLine::Action, action);
        QFETCH(PickFormat, format);
        QFETCH(bool, copy);
        QFETCH(int, exitCode);
        const CommandLine command = CommandLine::parse(QStringList{"tintwright"} + arguments);
        QCOMPARE(command.action, action);
        QCOMPARE(command.format, format);
        QCOMPARE(command.copy, copy);
        QCOMPARE(command.exitCode, exitCode);
        if (exitCode != 0)
            QCOMPARE(command.message.count(u'\n'), 1);
    }

    void runningInstanceAnswers_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("printed");
        QTest::addColumn<QString>("complaint"); // a word of the one line on standard error; empty: none
        QTest::newRow("picked") << "picked cmyk(0%, 50%, 100%, 50%)" << 0
                                << QByteArray("cmyk(0%, 50%, 100%, 50%)\n") << "";
        QTest::newRow("cancelled") << "cancelled" << 1 << QByteArray() << "";
        QTest::newRow("busy") << "busy" << 1 << QByteArray() << "picking";
        QTest::newRow("unavailable") << "unavailable no screenshot portal" << 3 << QByteArray() << "portal";
        QTest::newRow("garbled") << "?" << 1 << QByteArray() << "answer";
    }

    void runningInstanceAnswers()
    {
        QFETCH(QString, answer);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, printed);
        QFETCH(QString, complaint);
        QTemporaryDir dataHome;
        SingleInstance running(dataHome.filePath(QStringLiteral("Tintwright")));
        QCOMPARE(running.claimOrHandOver(), SingleInstance::Outcome::Primary);
        QStringList requests;
        connect(&running, &SingleInstance::pickRequested, this,
                [&](const QString &format, bool copy, const SingleInstance::PickAnswer &reply) {
                    requests.append(format + (copy ? " copy" : " no-copy"));
                    reply(answer);
                });

        QProcess command;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_DATA_HOME"), dataHome.path());
        command.setProcessEnvironment(environment);
        command.start(QStringLiteral(TINTWRIGHT_BINARY), {"--pick", "--format", "cmyk", "--no-copy"});
        QSignalSpy finished(&command, &QProcess::finished);
        QVERIFY(finished.wait(10000));

        QCOMPARE(requests, QStringList{"cmyk no-copy"});
        QCOMPARE(command.exitCode(), exitCode);
        QCOMPARE(command.readAllStandardOutput(), printed);
        const QString errors = QString::fromUtf8(command.readAllStandardError());
        QCOMPARE(errors.count(u'\n'), complaint.isEmpty() ? 0 : 1);
        QVERIFY2(errors.contains(complaint), qPrintable(errors));
    }

private:
    QTemporaryDir m_runtime;
};

QTEST_GUILESS_MAIN(TestPickCommand)
#include "tst_pickcommand.moc"
