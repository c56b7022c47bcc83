#include "PortalAvailability.h"

#include "picking/PortalRequest.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QStringList>
#include <QThread>

namespace {

const QString busService = QStringLiteral("org.freedesktop.DBus");
const QString busPath = QStringLiteral("/org/freedesktop/DBus");
const QString busInterface = QStringLiteral("org.freedesktop.DBus");

} // namespace

PortalAvailability::PortalAvailability(std::function<QDBusConnection()> connectToBus, QObject *parent)
    : QObject(parent)
{
    m_connecting =
        QThread::create([this, connectToBus = std::move(connectToBus)] { m_bus = connectToBus(); });
    connect(m_connecting, &QThread::finished, this, [this] {
        m_connecting->deleteLater();
        m_connecting = nullptr;
        ask();
    });
    m_connecting->start();
}

PortalAvailability::~PortalAvailability()
{
    if (m_connecting) {
        m_connecting->disconnect(this);
        m_connecting->wait();
        delete m_connecting;
    }
}

QDBusConnection PortalAvailability::bus() const
{
    return m_bus.value_or(QDBusConnection(QString()));
}

void PortalAvailability::ask()
{
    if (!m_bus || !m_bus->isConnected()) {
        settle(Answer::Absent);
        return;
    }
    // A portal started later (or by a first call) counts from then on.
    auto *watcher = new QDBusServiceWatcher(PortalRequest::portalService, *m_bus,
                                            QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] { settle(Answer::Present); });

    QDBusMessage hasOwner =
        QDBusMessage::createMethodCall(busService, busPath, busInterface, QStringLiteral("NameHasOwner"));
    hasOwner << PortalRequest::portalService;
    auto *reply = new QDBusPendingCallWatcher(m_bus->asyncCall(hasOwner), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *call) {
        call->deleteLater();
        const QDBusPendingReply<bool> owned = *call;
        if (!owned.isError() && owned.value())
            settle(Answer::Present);
        else
            askActivatable();
    });
}

void PortalAvailability::askActivatable()
{
    const QDBusMessage list = QDBusMessage::createMethodCall(busService, busPath, busInterface,
                                                             QStringLiteral("ListActivatableNames"));
    auto *reply = new QDBusPendingCallWatcher(m_bus->asyncCall(list), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *call) {
        call->deleteLater();
        const QDBusPendingReply<QStringList> names = *call;
        const bool activatable = !names.isError() && names.value().contains(PortalRequest::portalService);
        settle(activatable ? Answer::Present : Answer::Absent);
    });
}

void PortalAvailability::settle(Answer answer)
{
    // Once there, a portal stays the first choice; if it fails, the pick
    // falls back all the same.
    if (m_answer == answer || m_answer == Answer::Present)
        return;
    const bool first = m_answer == Answer::Unknown;
    m_answer = answer;
    if (first)
        emit answered(answer == Answer::Present);
}
