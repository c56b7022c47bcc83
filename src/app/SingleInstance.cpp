#include "SingleInstance.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QPointer>

#include <unistd.h>

namespace {

const QByteArray activateCommand = QByteArrayLiteral("activate");
const QByteArray pickCommand = QByteArrayLiteral("pick");
const QByteArray acknowledgement = QByteArrayLiteral("ok\n");
constexpr qint64 maxRequestSize = 4096;

QString runtimeFolder()
{
    // XDG_RUNTIME_DIR is private to the user; without it, fall back to the
    // temporary folder and let the uid in the name keep users apart.
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && QFileInfo(runtime).isDir())
        return runtime;
    return QDir::tempPath();
}

// The folder as the file system resolves it, links and ".." followed, so
// that every path to one folder gives one instance. The folder may not exist
// yet: its nearest existing parent is resolved, the rest taken as written.
QString resolvedFolder(const QString &folder)
{
    QString existing = QDir::isAbsolutePath(folder) ? folder : QDir::currentPath() + u'/' + folder;
    QString rest;
    for (;;) {
        const QString canonical = QFileInfo(existing).canonicalFilePath();
        const qsizetype slash = existing.lastIndexOf(u'/');
        if (!canonical.isEmpty() || slash <= 0)
            return QDir::cleanPath((canonical.isEmpty() ? existing : canonical) + rest);
        rest.prepend(existing.sliced(slash));
        existing.truncate(slash);
    }
}

QString launcherActivationToken()
{
    QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    if (token.isEmpty())
        token = qEnvironmentVariable("DESKTOP_STARTUP_ID");
    // The token travels on a single line.
    token.remove(QLatin1Char('\n'));
    return token;
}

} // namespace

SingleInstance::SingleInstance(const QString &dataFolder, QObject *parent)
    : QObject(parent)
    , m_serverName(serverNameFor(dataFolder))
{
}

SingleInstance::~SingleInstance() = default;

QString SingleInstance::serverNameFor(const QString &dataFolder)
{
    const QByteArray key = resolvedFolder(dataFolder).toUtf8();
    const QByteArray digest = QCryptographicHash::hash(key, QCryptographicHash::Sha1).toHex().left(16);
    return runtimeFolder()
        + QStringLiteral("/tintwright-%1-%2.socket").arg(::getuid()).arg(QString::fromLatin1(digest));
}

SingleInstance::Outcome SingleInstance::claimOrHandOver(int answerTimeoutMs)
{
    QByteArray answer;
    const Outcome outcome =
        claim(activateCommand + ' ' + launcherActivationToken().toUtf8() + '\n', answerTimeoutMs, &answer);
    if (outcome == Outcome::HandedOver && !answer.startsWith(acknowledgement))
        return Outcome::NoAnswer;
    return outcome;
}

SingleInstance::Outcome SingleInstance::claimOrAskToPick(const QString &format, bool copy, QString *answer)
{
    QByteArray line;
    const QByteArray request = pickCommand + ' ' + format.toUtf8() + ' '
        + (copy ? QByteArray("copy") : QByteArray("no-copy")) + '\n';
    const Outcome outcome = claim(request, -1, &line);
    if (outcome == Outcome::HandedOver && !line.endsWith('\n'))
        return Outcome::NoAnswer;
    if (answer)
        *answer = QString::fromUtf8(line.trimmed());
    return outcome;
}

SingleInstance::Outcome SingleInstance::claim(const QByteArray &request, int answerTimeoutMs,
                                              QByteArray *answer)
{
    // Held only for the check and the listen; QLockFile clears a lock
    // whose owner has died.
    QLockFile lock(m_serverName + QStringLiteral(".lock"));
    lock.setStaleLockTime(0);
    lock.tryLock(3000);

    QLocalSocket socket;
    socket.connectToServer(m_serverName);
    if (socket.waitForConnected(500)) {
        // An answer to a pick can take as long as the user does.
        lock.unlock();
        *answer = exchange(socket, request, answerTimeoutMs);
        return Outcome::HandedOver;
    }

    switch (socket.error()) {
    case QLocalSocket::ServerNotFoundError:
        break;
    case QLocalSocket::ConnectionRefusedError:
        // A socket file nobody listens on: its owner crashed.
        QLocalServer::removeServer(m_serverName);
        break;
    default:
        // Someone is there but too busy to accept (a full backlog shows as
        // a timeout). Taking the socket over would make two instances.
        return Outcome::NoAnswer;
    }
    if (!listen()) {
        // Not fatal: the program runs, only the hand-over is lost.
        qWarning("Tintwright: cannot listen on %s: %s", qPrintable(m_serverName),
                 qPrintable(m_server ? m_server->errorString() : QString()));
    }
    return Outcome::Primary;
}

QByteArray SingleInstance::exchange(QLocalSocket &socket, const QByteArray &request, int answerTimeoutMs)
{
    socket.write(request);
    socket.waitForBytesWritten(answerTimeoutMs);
    QByteArray answer;
    while (!answer.contains('\n') && socket.waitForReadyRead(answerTimeoutMs))
        answer += socket.readAll();
    return answer.left(answer.indexOf('\n') + 1);
}

void SingleInstance::close()
{
    delete m_server;
    m_server = nullptr;
}

bool SingleInstance::listen()
{
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server->listen(m_serverName))
        return false;
    connect(m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *client = m_server->nextPendingConnection())
            serve(client);
    });
    return true;
}

void SingleInstance::serve(QLocalSocket *client)
{
    connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
    connect(client, &QLocalSocket::readyRead, this, [this, client] {
        if (!client->canReadLine()) {
            if (client->bytesAvailable() > maxRequestSize)
                client->abort();
            return;
        }
        const QByteArray line = client->readLine(maxRequestSize).trimmed();
        const qsizetype space = line.indexOf(' ');
        const QByteArray command = space < 0 ? line : line.left(space);
        if (command == pickCommand) {
            servePick(client, line.mid(space + 1));
            return;
        }
        if (command != activateCommand) {
            client->abort();
            return;
        }
        const QString token = space < 0 ? QString() : QString::fromUtf8(line.mid(space + 1));
        client->write(acknowledgement);
        client->flush();
        client->disconnectFromServer();
        emit activationRequested(token);
    });
}

void SingleInstance::servePick(QLocalSocket *client, const QByteArray &arguments)
{
    const QList<QByteArray> words = arguments.split(' ');
    if (words.size() != 2 || (words[1] != "copy" && words[1] != "no-copy")) {
        client->abort();
        return;
    }
    // The answer may come long after; the command may be gone by then.
    client->disconnect(this);
    const QPointer<QLocalSocket> guarded(client);
    emit pickRequested(QString::fromUtf8(words[0]), words[1] == "copy", [guarded](const QString &line) {
        if (!guarded)
            return;
        QString oneLine = line;
        guarded->write(oneLine.replace(u'\n', u' ').toUtf8() + '\n');
        guarded->flush();
        guarded->disconnectFromServer();
    });
}
