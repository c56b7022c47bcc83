#include "app/CommandLine.h"
#include "app/SingleInstance.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(CommandLine::Action)
Q_DECLARE_METATYPE(Notation)
Q_DECLARE_METATYPE(SingleInstance::PickReply)

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
        QTest::newRow("unknown option")
            << QStringList{"--pik"} << Action::Exit << Notation::Hex << true << 2;
    }

    void parse()
    {
        QFETCH(QStringList, arguments);
        QFETCH(CommandLine::Action, action);
        QFETCH(Notation, notation);
        QFETCH(bool, copy);
        QFETCH(int, exitCode);
        const CommandLine command = CommandLine::parse(QStringList{"tintwright"} + arguments);
        QCOMPARE(command.action, action);
        QCOMPARE(command.notation, notation);
        QCOMPARE(command.copy, copy);
        QCOMPARE(command.exitCode, exitCode);
        if (exitCode != 0)
            QCOMPARE(command.message.count(u'\n'), 1);
    }

    // The exit code and output for each reply of a running instance.
    void runningInstanceAnswers_data()
    {
        const auto picked = [](std::initializer_list<double> reds) {
            PickResult result{PickResult::Outcome::Picked, {}, {}};
            for (const double red : reds)
                result.colors.append(ColorItem::create(QStringLiteral("Picked Color"), red, 0.5, 1.0));
            return SingleInstance::PickReply{false, result};
        };
        QTest::addColumn<SingleInstance::PickReply>("reply");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("printed");
        QTest::addColumn<QString>("complaint"); // a word of the one line on standard error; empty: none
        QTest::newRow("picked") << picked({0.0}) << 0 << QByteArray("cmyk(100%, 50%, 0%, 0%)\n") << "";
        QTest::newRow("picked twice, a line each")
            << picked({0.0, 1.0}) << 0 << QByteArray("cmyk(100%, 50%, 0%, 0%)\ncmyk(0%, 50%, 0%, 0%)\n") << "";
        QTest::newRow("cancelled") << SingleInstance::PickReply{} << 1 << QByteArray() << "";
        QTest::newRow("busy") << SingleInstance::PickReply{true, {}} << 1 << QByteArray() << "picking";
        QTest::newRow("unavailable")
            << SingleInstance::PickReply{false, {PickResult::Outcome::Unavailable, {}, QStringLiteral("no portal")}}
            << 3 << QByteArray() << "portal";
    }

    void runningInstanceAnswers()
    {
        QFETCH(SingleInstance::PickReply, reply);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, printed);
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
