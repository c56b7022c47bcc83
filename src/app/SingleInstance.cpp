#include "SingleInstance.h"

#include "storage/DataLocation.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QScopeGuard>
#include <QSocketNotifier>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

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

template<typename... Values> void send(int socket, const Values &...values)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(streamVersion);
    (out << ... << values);
    for (qsizetype sent = 0; sent < bytes.size();) {
        // Not a signal that would end the program when the peer has gone.
        const ssize_t n = ::send(socket, bytes.constData() + sent, size_t(bytes.size() - sent), MSG_NOSIGNAL);
        if (n < 0 && errno != EINTR && errno != EAGAIN)
            return;
        sent += qMax<ssize_t>(n, 0);
    }
}

// The values, when the bytes hold them whole.
template<typename... Values> bool decode(const QByteArray &bytes, Values &...values)
{
    QDataStream in(bytes);
    in.setVersion(streamVersion);
    (in >> ... >> values);
    return in.status() == QDataStream::Ok;
}

// Reads into `bytes` what has arrived; false once the peer has gone.
bool readAvailable(int socket, QByteArray &bytes)
{
    char chunk[4096];
    for (;;) {
        const ssize_t n = ::read(socket, chunk, sizeof chunk);
        if (n > 0)
            bytes.append(chunk, n);
        else
            return n < 0 && (errno == EAGAIN || errno == EINTR);
    }
}

// Reads values once they have all arrived; false when they never do.
template<typename... Values> bool receive(int socket, int timeoutMs, Values &...values)
{
    QByteArray bytes;
    while (!decode(bytes, values...)) {
        pollfd ready{socket, POLLIN, 0};
        if (::poll(&ready, 1, timeoutMs) <= 0 || (!readAvailable(socket, bytes) && !decode(bytes, values...)))
            return false;
    }
    return true;
}

sockaddr_un addressOf(const QString &path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path - 1);
    return address;
}

int newSocket()
{
    return ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
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

SingleInstance::~SingleInstance()
{
    close();
}

QString SingleInstance::serverNameFor(const QString &dataFolder)
{
    const QByteArray key = DataLocation::resolvedFolder(dataFolder).toUtf8();
    const QByteArray digest = QCryptographicHash::hash(key, QCryptographicHash::Sha1).toHex().left(16);
    return runtimeFolder()
        + QStringLiteral("/tintwright-%1-%2.socket").arg(::getuid()).arg(QString::fromLatin1(digest));
}

SingleInstance::Outcome SingleInstance::claimOrHandOver(int answerTimeoutMs)
{
    return claim([answerTimeoutMs](int socket) {
        send(socket, Request::Activate, launcherActivationToken());
        quint8 answer = 0;
        return receive(socket, answerTimeoutMs, answer) && answer == acknowledgement;
    });
}

SingleInstance::Outcome SingleInstance::claimOrAskToPick(Notation notation, bool copy, PickReply *reply)
{
    return claim([=](int socket) {
        send(socket, Request::Pick, notation, copy);
        // An answer to a pick can take as long as the user does.
        return receive(socket, -1, *reply);
    });
}

SingleInstance::Outcome SingleInstance::claim(const std::function<bool(int)> &ask)
{
    // Held only for the check and the listen; the kernel lets go of it if
    // its holder dies. A plain flock: QLockFile writes and reads a file of
    // details, which costs the window a millisecond before it shows.
    int lock = ::open(QFile::encodeName(m_serverName + QStringLiteral(".lock")).constData(),
                      O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    for (int wait = 0; lock >= 0 && ::flock(lock, LOCK_EX | LOCK_NB) != 0 && wait < 300; ++wait)
        ::usleep(10000);
    const auto unlock = [&lock] {
        if (lock >= 0)
            ::close(std::exchange(lock, -1));
    };
    const auto unlockAtEnd = qScopeGuard(unlock);

    const sockaddr_un address = addressOf(m_serverName);
    const int socket = newSocket();
    if (::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0) {
        unlock();
        const bool answered = ask(socket);
        ::close(socket);
        return answered ? Outcome::HandedOver : Outcome::NoAnswer;
    }
    const int error = errno;
    ::close(socket);
    if (error == ECONNREFUSED) {
        // A socket file nobody listens on: its owner crashed.
        ::unlink(address.sun_path);
    } else if (error != ENOENT) {
        // Someone is there but too busy to accept (a full backlog).
        // Taking the socket over would make two instances.
        return Outcome::NoAnswer;
    }
    if (!listen()) // not fatal: the program runs, only the hand-over is lost
        qWarning("Tintwright: cannot listen on %s: %s", qPrintable(m_serverName), std::strerror(errno));
    return Outcome::Primary;
}

void SingleInstance::close()
{
    if (m_listening < 0)
        return;
    delete m_notifier;
    m_notifier = nullptr;
    ::close(m_listening);
    m_listening = -1;
    QFile::remove(m_serverName);
}

bool SingleInstance::listen()
{
    m_listening = newSocket();
    const sockaddr_un address = addressOf(m_serverName);
    // Only this user may connect.
    const mode_t mask = ::umask(0077);
    const bool listening =
        ::bind(m_listening, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0
        && ::listen(m_listening, 8) == 0;
    ::umask(mask);
    if (!listening) {
        ::close(m_listening);
        m_listening = -1;
        return false;
    }
    m_notifier = new QSocketNotifier(m_listening, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        for (int client;
             (client = ::accept4(m_listening, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK)) >= 0;)
            serve(client);
    });
    return true;
}

void SingleInstance::serve(int client)
{
    // Open until answered, or until the client goes; the answer to a pick
    // may come long after, when the command may be gone.
    struct Client
    {
        int socket;
        QByteArray request;
        bool asked = false;
    };
    const auto state = std::make_shared<Client>(Client{client, {}});
    const QPointer<QSocketNotifier> notifier = new QSocketNotifier(client, QSocketNotifier::Read, this);
    const auto hangUp = [state, notifier] {
        if (state->socket >= 0)
            ::close(state->socket);
        state->socket = -1;
        if (notifier)
            notifier->deleteLater();
    };
    connect(notifier, &QSocketNotifier::activated, this, [this, state, hangUp] {
        const bool open = readAvailable(state->socket, state->request);
        if (!open || (!state->asked && state->request.size() > maxRequestSize)) {
            hangUp();
            return;
        }
        Request request{};
        QString token;
        Notation notation{};
        bool copy = false;
        if (state->asked) {
            return;
        } else if (decode(state->request, request, token) && request == Request::Activate) {
            send(state->socket, acknowledgement);
            hangUp();
            emit activationRequested(token);
        } else if (decode(state->request, request, notation, copy) && request == Request::Pick
                   && int(notation) >= 0 && int(notation) < int(std::size(Notations::all))) {
            state->asked = true;
            emit pickRequested(notation, copy, [state, hangUp](const PickReply &reply) {
                if (state->socket >= 0)
                    send(state->socket, reply);
                hangUp();
            });
        }
    });
}
