#include "GlobalPickShortcut.h"

#include "picking/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusMetaType>

namespace {

const QString shortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");

// One entry of BindShortcuts' a(sa{sv}).
struct ShortcutEntry
{
    QString id;
    QVariantMap properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const ShortcutEntry &entry)
{
    argument.beginStructure();
    argument << entry.id << entry.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ShortcutEntry &entry)
{
    argument.beginStructure();
    argument >> entry.id >> entry.properties;
    argument.endStructure();
    return argument;
}

QDBusMessage portalCall(const QString &method)
{
    return QDBusMessage::createMethodCall(PortalRequest::portalService, PortalRequest::portalPath,
                                          shortcutsInterface, method);
}

} // namespace

Q_DECLARE_METATYPE(ShortcutEntry)

GlobalPickShortcut::GlobalPickShortcut(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    qDBusRegisterMetaType<ShortcutEntry>();
    qDBusRegisterMetaType<QList<ShortcutEntry>>();
}

GlobalPickShortcut::~GlobalPickShortcut()
{
    if (m_sessionHandle.isEmpty())
        return;
    m_bus.disconnect(PortalRequest::portalService, PortalRequest::portalPath, shortcutsInterface,
                     QStringLiteral("Activated"), this,
                     SLOT(handleActivated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
}

void GlobalPickShortcut::start()
{
    if (!m_bus.isConnected())
        return;
    QDBusMessage call = portalCall(QStringLiteral("CreateSession"));
    call << QVariantMap{{QStringLiteral("session_handle_token"), PortalRequest::newToken()}};
    auto *request = new PortalRequest(m_bus, call, this);
    connect(request, &PortalRequest::responded, this, &GlobalPickShortcut::sessionCreated);
    request->start();
}

void GlobalPickShortcut::sessionCreated(uint response, const QVariantMap &results)
{
    const QVariant handle = results.value(QStringLiteral("session_handle"));
    m_sessionHandle =
        handle.canConvert<QDBusObjectPath>() ? handle.value<QDBusObjectPath>().path() : handle.toString();
    if (response != 0 || m_sessionHandle.isEmpty()) {
        m_sessionHandle.clear();
        return;
    }
    // Bound to the portal's name, as the requests' answers are.
    m_bus.connect(PortalRequest::portalService, PortalRequest::portalPath, shortcutsInterface,
                  QStringLiteral("Activated"), this,
                  SLOT(handleActivated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    bindShortcut();
}

void GlobalPickShortcut::bindShortcut()
{
    const QList<ShortcutEntry> shortcuts{
        {shortcutId,
         {{QStringLiteral("description"), QStringLiteral("Pick a color")},
          {QStringLiteral("preferred_trigger"), QStringLiteral("LOGO+SHIFT+c")}}}};
    QDBusMessage call = portalCall(QStringLiteral("BindShortcuts"));
    call << QVariant::fromValue(QDBusObjectPath(m_sessionHandle)) << QVariant::fromValue(shortcuts)
         << QString() << QVariantMap();
    (new PortalRequest(m_bus, call, this))->start();
}

void GlobalPickShortcut::handleActivated(const QDBusObjectPath &session, const QString &id, qulonglong,
                                         const QVariantMap &)
{
    if (session.path() == m_sessionHandle && id == shortcutId)
        emit activated();
}
