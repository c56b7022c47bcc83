#include "FakeGlobalShortcutsPortal.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QTimer>

namespace {

const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interfaceName = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");

void sendResponse(QDBusConnection bus, const QString &path, const QVariantMap &results)
{
    QDBusMessage signal = QDBusMessage::createSignal(path, QStringLiteral("org.freedesktop.portal.Request"),
                                                     QStringLiteral("Response"));
    signal << 0u << results;
    bus.send(signal);
}

// An a{sv} arrives still marshalled in a raw message.
QVariantMap toMap(const QVariant &value)
{
    if (value.canConvert<QDBusArgument>())
        return qdbus_cast<QVariantMap>(value.value<QDBusArgument>());
    return value.toMap();
}

} // namespace

FakeGlobalShortcutsPortal::FakeGlobalShortcutsPortal(const QDBusConnection &bus)
    : m_bus(bus)
{
}

FakeGlobalShortcutsPortal::~FakeGlobalShortcutsPortal()
{
    m_bus.unregisterObject(portalPath);
    m_bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
}

bool FakeGlobalShortcutsPortal::registerOnBus()
{
    return m_bus.registerVirtualObject(portalPath, this)
        && m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
}

void FakeGlobalShortcutsPortal::activate(QDBusConnection bus, const QString &session, const QString &id)
{
    QDBusMessage signal = QDBusMessage::createSignal(portalPath, interfaceName, QStringLiteral("Activated"));
    signal << QVariant::fromValue(QDBusObjectPath(session)) << id << qulonglong(1) << QVariantMap();
    bus.send(signal);
}

bool FakeGlobalShortcutsPortal::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    if (message.interface() != interfaceName)
        return false;
    const QVariantMap options = toMap(message.arguments().last());
    QString sender = message.service().mid(1);
    sender.replace(u'.', u'_');
    const QString path = portalPath + QStringLiteral("/request/") + sender + u'/'
        + options.value(QStringLiteral("handle_token")).toString();
    requestPaths.append(path);
    QVariantMap results;
    if (message.member() == QLatin1String("CreateSession")) {
        results.insert(QStringLiteral("session_handle"), sessionPath);
    } else if (message.member() == QLatin1String("BindShortcuts")) {
        boundSessions.append(message.arguments().at(0).value<QDBusObjectPath>().path());
        const QDBusArgument shortcuts = message.arguments().at(1).value<QDBusArgument>();
        shortcuts.beginArray();
        while (!shortcuts.atEnd()) {
            QString id;
            QVariantMap properties;
            shortcuts.beginStructure();
            shortcuts >> id >> properties;
            shortcuts.endStructure();
            boundIds.append(id);
        }
        shortcuts.endArray();
    } else {
        return false;
    }
    connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
    QDBusConnection bus = m_bus;
    QTimer::singleShot(20, this, [bus, path, results] { sendResponse(bus, path, results); });
    return true;
}
