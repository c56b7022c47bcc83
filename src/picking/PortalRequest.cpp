#include "PortalRequest.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QRandomGenerator>
#include <QTimer>

namespace {

const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");

} // namespace

PortalRequest::PortalRequest(const QDBusConnection &bus, QDBusMessage call, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_call(std::move(call))
{
}

PortalRequest::~PortalRequest()
{
    unsubscribe();
}

QString PortalRequest::requestPath(const QDBusConnection &bus, const QString &token)
{
    QString sender = bus.baseService();
    if (sender.startsWith(u':'))
        sender.remove(0, 1);
    sender.replace(u'.', u'_');
    return portalPath + QStringLiteral("/request/") + sender + u'/' + token;
}

QString PortalRequest::newToken()
{
    quint32 words[4];
    QRandomGenerator::system()->fillRange(words);
    QString token = QStringLiteral("tintwright_");
    for (quint32 word : words)
        token += QStringLiteral("%1").arg(word, 8, 16, QLatin1Char('0'));
    return token;
}

void PortalRequest::start()
{
    const QString token = newToken();
    QList<QVariant> arguments = m_call.arguments();
    QVariantMap options = arguments.isEmpty() ? QVariantMap() : arguments.takeLast().toMap();
    options.insert(QStringLiteral("handle_token"), token);
    arguments.append(options);
    m_call.setArguments(arguments);
    if (!m_bus.isConnected() || !subscribe(requestPath(m_bus, token))) {
        QTimer::singleShot(0, this, [this] {
            emit failed(QStringLiteral("cannot listen for the portal's answer"));
            finish();
        });
        return;
    }
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(m_call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, &PortalRequest::handleReply);
}

void PortalRequest::handleReply(QDBusPendingCallWatcher *watcher)
{
    watcher->deleteLater();
    const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
    if (m_finished)
        return;
    if (reply.isError()) {
        emit failed(reply.error().name() + QStringLiteral(": ") + reply.error().message());
        finish();
        return;
    }
    const QString handle = reply.value().path();
    if (handle != m_subscribedPath && !subscribe(handle)) {
        emit failed(QStringLiteral("cannot listen for the portal's answer"));
        finish();
    }
}

void PortalRequest::handleResponse(uint response, const QVariantMap &results)
{
    if (m_finished)
        return;
    emit responded(response, results);
    finish();
}

bool PortalRequest::subscribe(const QString &path)
{
    unsubscribe();
    // Bound to the portal's name: QtDBus only delivers the signal when its
    // sender is the current owner of that name, so no other client can
    // answer in the portal's place.
    if (!m_bus.connect(portalService, path, requestInterface, QStringLiteral("Response"),
                       QStringLiteral("ua{sv}"), this, SLOT(handleResponse(uint, QVariantMap))))
        return false;
    m_subscribedPath = path;
    return true;
}

void PortalRequest::unsubscribe()
{
    if (m_subscribedPath.isEmpty())
        return;
    m_bus.disconnect(portalService, m_subscribedPath, requestInterface, QStringLiteral("Response"),
                     QStringLiteral("ua{sv}"), this, SLOT(handleResponse(uint, QVariantMap)));
    m_subscribedPath.clear();
}

void PortalRequest::finish()
{
    m_finished = true;
    unsubscribe();
    deleteLater();
}
