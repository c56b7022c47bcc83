#include "SingleInstance.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QPointer>

#include <unistd.h>

namespace {

enum class Request : quint8 { Activate = 1, Pick = 2 };
constexpr quint8 acknowledgement = 1;
constexpr qint64 maxRequestSize = 4096;
constexpr QDataStream::Version streamVersion = QDataStream::Qt_6_4;

QDataStream &operator<<(QDataStream &stream, const SingleInstance::PickReply &reply)
{
    return stream << reply.busy << reply.result;
}

QDataStream &operator>>(QDataStream &stream, SingleInstance::PickReply &reply)
{
    return stream >> reply.busy >> reply.result;
}

template<typename... Values> void send(QLocalSocket &socket, const Values &...values)
{
    QDataStream out(&socket);
    out.setVersion(streamVersion);
    (out << ... << values);
    socket.flush();
}

// Reads values once they have all arrived; false when they never do.
template<typename... Values> bool receive(QLocalSocket &socket, int timeoutMs, Values &...values)
{
    QDataStream in(&socket);
    in.setVersion(streamVersion);
    for (;;) {
        in.startTransaction();
        (in >> ... >> values);
        if (in.commitTransaction())
            return true;
        if (!socket.waitForReadyRead(timeoutMs))
            return false;
    }
}

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
    const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? qEnvironmentVariable("DESKTOP_STARTUP_ID") : token;
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
    return claim([answerTimeoutMs](QLocalSocket &socket) {
        send(socket, Request::Activate, launcherActivationToken());
        quint8 answer = 0;
        return receive(socket, answerTimeoutMs, answer) && answer == acknowledgement;
    });
}

SingleInstance::Outcome SingleInstance::claimOrAskToPick(Notation notation, bool copy, PickReply *reply)
{
    return claim([=](QLocalSocket &socket) {
        send(socket, Request::Pick, notation, copy);
        // An answer to a pick can take as long as the user does.
        return receive(socket, -1, *reply);
    });
}

SingleInstance::Outcome SingleInstance::claim(const std::function<bool(QLocalSocket &)> &ask)
{
    // Held only for the check and the listen; QLockFile clears a lock
    // whose owner has died.
    QLockFile lock(m_serverName + QStringLiteral(".lock"));
    lock.setStaleLockTime(0);
    lock.tryLock(3000);

    QLocalSocket socket;
    socket.connectToServer(m_serverName);
    if (socket.waitForConnected(500)) {
        lock.unlock();
        return ask(socket) ? Outcome::HandedOver : Outcome::NoAnswer;
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
        if (client->bytesAvailable() > maxRequestSize) {
            client->abort();
            return;
        }
        QDataStream in(client);
        in.setVersion(streamVersion);
        in.startTransaction();
        Request request{};
        QString token;
        Notation notation{};
        bool copy = false;
        in >> request;
        if (request == Request::Activate)
            in >> token;
        else if (request == Request::Pick)
            in >> notation >> copy;
        if (!in.commitTransaction())
            return; // the rest is still on its way
        if (request == Request::Activate) {
            send(*client, acknowledgement);
            client->disconnectFromServer();
            emit activationRequested(token);
        } else if (request == Request::Pick && int(notation) >= 0
                   && int(notation) < int(std::size(Notations::all))) {
            // The answer may come long after; the command may be gone by then.
            client->disconnect(this);
            const QPointer<QLocalSocket> guarded(client);
            emit pickRequested(notation, copy, [guarded](const PickReply &reply) {
                if (!guarded)
                    return;
                send(*guarded, reply);
                guarded->disconnectFromServer();
            });
        } else {
            client->abort();
        }
    });
}
