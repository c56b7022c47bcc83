#include "app/SingleInstance.h"

#include <QDir>
#include <QFileInfo>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cstring>

namespace {

// A socket file bound by a process that is gone: connecting is refused.
// With listening on, it models a hung instance that never answers.
int bindRawSocket(const QString &path, bool listening)
{
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray encoded = QFile::encodeName(path);
    std::memcpy(address.sun_path, encoded.constData(),
                qMin<size_t>(encoded.size(), sizeof address.sun_path - 1));
    if (::bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0) {
        ::close(fd);
        return -1;
    }
    if (listening)
        ::listen(fd, 4);
    return fd;
}

// Runs the later launch on its own thread: its hand-over blocks, and the
// running instance answers from this thread's event loop.
class LaterLaunch : public QThread
{
public:
    explicit LaterLaunch(const QString &dataFolder)
        : m_dataFolder(dataFolder)
    {
    }
    std::atomic<int> outcome{-1};

protected:
    void run() override
    {
        SingleInstance later(m_dataFolder);
        outcome = int(later.claimOrHandOver(3000));
    }

private:
    QString m_dataFolder;
};

} // namespace

class TestSingleInstance : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(m_runtime.isValid());
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime.path()));
    }

    void serverNameSeparatesDataFolders_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::addColumn<bool>("same");
        QTest::newRow("same folder") << "/home/a/.local/share/Tintwright"
                                     << "/home/a/.local/share/Tintwright" << true;
        QTest::newRow("trailing slash and dots") << "/home/a/.local/share/Tintwright/"
                                                 << "/home/a/.local/share/x/../Tintwright" << true;
        QTest::newRow("other folder") << "/home/a/.local/share/Tintwright"
                                      << "/home/b/.local/share/Tintwright" << false;
    }

    void serverNameSeparatesDataFolders()
    {
        QFETCH(QString, first);
        QFETCH(QString, second);
        QFETCH(bool, same);
        const QString a = SingleInstance::serverNameFor(first);
        const QString b = SingleInstance::serverNameFor(second);
        QCOMPARE(a == b, same);
        QVERIFY(a.startsWith(m_runtime.path() + QLatin1Char('/')));
        // Unix socket paths are short; the name must leave room.
        QVERIFY(a.toUtf8().size() < 100);
    }

    void serverNameFollowsLinks_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::newRow("through a link") << "real/Tintwright"
                                        << "link/Tintwright";
        QTest::newRow("not made yet") << "real/new/Tintwright"
                                      << "link/new/Tintwright";
        QTest::newRow("dots after a link") << "real/Tintwright"
                                           << "link/new/../Tintwright";
    }

    // One folder reached by two paths is one instance: two would overwrite
    // each other's palettes.
    void serverNameFollowsLinks()
    {
        QFETCH(QString, first);
        QFETCH(QString, second);
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("real/Tintwright")));
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("real")), dir.filePath(QStringLiteral("link"))));
        QCOMPARE(SingleInstance::serverNameFor(dir.filePath(second)),
                 SingleInstance::serverNameFor(dir.filePath(first)));
    }

    void firstLaunchListens()
    {
        QTemporaryDir data;
        SingleInstance first(data.path());
        QCOMPARE(first.claimOrHandOver(), SingleInstance::Outcome::Primary);
        QLocalSocket probe;
        probe.connectToServer(first.serverName());
        QVERIFY(probe.waitForConnected(1000));
    }

    void laterLaunchHandsOverWithItsToken_data()
    {
        QTest::addColumn<QByteArray>("token");
        QTest::newRow("no token") << QByteArray();
        QTest::newRow("wayland token") << QByteArray("kwin-4711_TIME123");
    }

    void laterLaunchHandsOverWithItsToken()
    {
        QFETCH(QByteArray, token);
        QTemporaryDir data;
        SingleInstance first(data.path());
        QCOMPARE(first.claimOrHandOver(), SingleInstance::Outcome::Primary);
        QSignalSpy requests(&first, &SingleInstance::activationRequested);

        if (token.isEmpty())
            qunsetenv("XDG_ACTIVATION_TOKEN");
        else
            qputenv("XDG_ACTIVATION_TOKEN", token);
        qunsetenv("DESKTOP_STARTUP_ID");
        LaterLaunch later(data.path());
        later.start();
        QTRY_VERIFY_WITH_TIMEOUT(later.isFinished(), 5000);
        qunsetenv("XDG_ACTIVATION_TOKEN");

        QCOMPARE(later.outcome.load(), int(SingleInstance::Outcome::HandedOver));
        QTRY_COMPARE(requests.count(), 1);
        QCOMPARE(requests.at(0).at(0).toString(), QString::fromUtf8(token));
    }

    void staleSocketIsTakenOver()
    {
        QTemporaryDir data;
        const QString name = SingleInstance::serverNameFor(data.path());
        const int fd = bindRawSocket(name, false);
        QVERIFY(fd >= 0);
        ::close(fd); // the "crashed" owner; the socket file stays behind
        QVERIFY(QFileInfo::exists(name));

        SingleInstance next(data.path());
        QCOMPARE(next.claimOrHandOver(), SingleInstance::Outcome::Primary);
        QLocalSocket probe;
        probe.connectToServer(name);
        QVERIFY(probe.waitForConnected(1000));
    }

    void silentInstanceIsReportedNotReplaced()
    {
        QTemporaryDir data;
        const QString name = SingleInstance::serverNameFor(data.path());
        const int fd = bindRawSocket(name, true); // accepts, never answers
        QVERIFY(fd >= 0);

        SingleInstance next(data.path());
        QCOMPARE(next.claimOrHandOver(200), SingleInstance::Outcome::NoAnswer);
        // Its socket is left alone: that instance may still be saving.
        QVERIFY(QFileInfo::exists(name));
        ::close(fd);
    }

    void unknownRequestsAreDropped()
    {
        QTemporaryDir data;
        SingleInstance first(data.path());
        QCOMPARE(first.claimOrHandOver(), SingleInstance::Outcome::Primary);
        QSignalSpy requests(&first, &SingleInstance::activationRequested);

        QLocalSocket client;
        client.connectToServer(first.serverName());
        QVERIFY(client.waitForConnected(1000));
        client.write("quit now\n");
        QTRY_COMPARE(client.state(), QLocalSocket::UnconnectedState);
        QCOMPARE(requests.count(), 0);
    }

private:
    QTemporaryDir m_runtime;
};

QTEST_GUILESS_MAIN(TestSingleInstance)
#include "tst_singleinstance.moc"
