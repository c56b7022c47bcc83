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

#include <cstring>

// A socket file as an instance that is gone leaves it (refusing
// connections), or, listening, an instance that hangs and never answers.
static int bindRawSocket(const QString &path, bool listening)
{
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path - 1);
    if (::bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0
        || (listening && ::listen(fd, 4)))
        return -1;
    return fd;
}

class TestSingleInstance : public QObject
{
    Q_OBJECT

private slots:
    void init() { qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime.path())); }

    void serverNameIsTheRealFolder_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::addColumn<bool>("same");
        QTest::newRow("trailing slash and dots") << "real/Tintwright/"
                                                 << "real/x/../Tintwright" << true;
        QTest::newRow("other folder") << "real/Tintwright"
                                      << "real/Other" << false;
        // One folder reached by two paths is one instance: two would
        // overwrite each other's palettes.
        QTest::newRow("not made yet, through a link") << "real/new/Tintwright"
                                                      << "link/new/Tintwright" << true;
    }

    void serverNameIsTheRealFolder()
    {
        QFETCH(QString, first);
        QFETCH(QString, second);
        QFETCH(bool, same);
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("real/Tintwright")));
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("real")), dir.filePath(QStringLiteral("link"))));
        const QString a = SingleInstance::serverNameFor(dir.filePath(first));
        QCOMPARE(a == SingleInstance::serverNameFor(dir.filePath(second)), same);
        QVERIFY(a.startsWith(m_runtime.path() + QLatin1Char('/')));
        QVERIFY(a.toUtf8().size() < 100); // room in a Unix socket path
    }

    void laterLaunchHandsOverWithItsToken_data()
    {
        QTest::addColumn<QByteArray>("token");
        QTest::newRow("wayland token") << QByteArray("kwin-4711_TIME123");
    }

    void laterLaunchHandsOverWithItsToken()
    {
        QFETCH(QByteArray, token);
        QTemporaryDir data;
        SingleInstance first(data.path());
        QCOMPARE(first.claimOrHandOver(), SingleInstance::Outcome::Primary);
        QSignalSpy requests(&first, &SingleInstance::activationRequested);
        qputenv("XDG_ACTIVATION_TOKEN", token);
        qunsetenv("DESKTOP_STARTUP_ID");
        // Its hand-over blocks; the first answers from this event loop.
        int outcome = -1;
        QScopedPointer<QThread> later(
            QThread::create([&] { outcome = int(SingleInstance(data.path()).claimOrHandOver(3000)); }));
        later->start();
        QTRY_VERIFY_WITH_TIMEOUT(later->isFinished(), 5000);
        qunsetenv("XDG_ACTIVATION_TOKEN");
        QCOMPARE(outcome, int(SingleInstance::Outcome::HandedOver));
        QTRY_COMPARE(requests.count(), 1);
        QCOMPARE(requests.at(0).at(0).toString(), QString::fromUtf8(token));
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
        QFETCH(SingleInstance::Outcome, outcome);
        QTemporaryDir data;
        const QString name = SingleInstance::serverNameFor(data.path());
        const int fd = bindRawSocket(name, listening);
        QVERIFY(fd >= 0);
        if (!listening)
            ::close(fd);
        SingleInstance next(data.path());
        QCOMPARE(next.claimOrHandOver(200), outcome);
        QLocalSocket probe;
        probe.connectToServer(name);
        QCOMPARE(probe.waitForConnected(1000), true);
        if (listening)
            ::close(fd);
    }

private:
    QTemporaryDir m_runtime;
};

QTEST_GUILESS_MAIN(TestSingleInstance)
#include "tst_singleinstance.moc"
