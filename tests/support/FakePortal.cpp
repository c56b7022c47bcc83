#include "FakePortal.h"

#include <QUrl>

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QTimer>

namespace {

// An a{sv} arrives still marshalled in a raw message.
QVariantMap toMap(const QVariant &value)
{
    if (value.canConvert<QDBusArgument>())
        return qdbus_cast<QVariantMap>(value.value<QDBusArgument>());
    return value.toMap();
}

} // namespace

FakePortal::~FakePortal()
{
    portalBus.unregisterObject(objectPath);
    portalBus.unregisterService(serviceName);
}

QDBusConnection FakePortal::connect()
{
    static int connections = 0; // a name once given stays with its bus
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus,
                                         QStringLiteral("fake-portal-%1").arg(++connections));
}

bool FakePortal::registerOnBus()
{
    return portalBus.registerVirtualObject(objectPath, this) && portalBus.registerService(serviceName);
}

void FakePortal::respond(QDBusConnection from, const QString &path, uint response, const QVariantMap &results)
{
    QDBusMessage signal = QDBusMessage::createSignal(path, QStringLiteral("org.freedesktop.portal.Request"),
                                                     QStringLiteral("Response"));
    signal << response << results;
    from.send(signal);
}

QVariantMap FakePortal::colorResults(double red, double green, double blue)
{
    QDBusArgument color; // (ddd)
    color.beginStructure();
    color << red << green << blue;
    color.endStructure();
    return {{QStringLiteral("color"), QVariant::fromValue(color)}};
}

void FakePortal::activate(QDBusConnection from, const QString &session, const QString &id)
{
    QDBusMessage signal = QDBusMessage::createSignal(
        objectPath, QStringLiteral("org.freedesktop.portal.GlobalShortcuts"), QStringLiteral("Activated"));
    signal << QVariant::fromValue(QDBusObjectPath(session)) << id << qulonglong(1) << QVariantMap();
    from.send(signal);
}

bool FakePortal::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    const QVariantMap options = toMap(message.arguments().value(message.arguments().size() - 1));
    const QString token = options.value(QStringLiteral("handle_token")).toString();
    const QString base =
        objectPath + QStringLiteral("/request/") + message.service().mid(1).replace(u'.', u'_') + u'/';
    QString handle = base + token;
    QVariantMap results;
    uint response = 0;
    if (message.member() == QLatin1String("PickColor")) {
        emit pickColorCalled();
        tokens.append(token);
        predictedPaths.append(handle);
        if (mode == Mode::ErrorReply) {
            connection.send(message.createErrorReply(QDBusError::AccessDenied,
                                                     QStringLiteral("Screenshot portal is disabled")));
            return true;
        }
        if (mode == Mode::MismatchedHandle)
            handle = base + QStringLiteral("portal_chosen_7");
        returnedHandles.append(handle);
        response = mode == Mode::Cancel ? 1 : mode == Mode::ErrorResponse ? 2 : 0;
        if (mode == Mode::Color || mode == Mode::MismatchedHandle)
            results = colorResults(color[0], color[1], color[2]);
    } else if (message.member() == QLatin1String("Screenshot")) {
        if (screenshotFile.isEmpty()) {
            connection.send(
                message.createErrorReply(QDBusError::UnknownMethod, QStringLiteral("No Screenshot")));
            return true;
        }
        results.insert(QStringLiteral("uri"), QUrl::fromLocalFile(screenshotFile).toString());
    } else if (message.member() == QLatin1String("CreateSession")) {
        results.insert(QStringLiteral("session_handle"), sessionPath);
    } else if (message.member() == QLatin1String("BindShortcuts")) {
        boundSessions.append(message.arguments().at(0).value<QDBusObjectPath>().path());
        const auto shortcuts = qdbus_cast<QList<std::pair<QString, QVariantMap>>>(message.arguments().at(1));
        for (const auto &shortcut : shortcuts)
            boundIds.append(shortcut.first);
    } else {
        return false;
    }
    connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(handle))));
    const bool picking = message.member() == QLatin1String("PickColor");
    QTimer::singleShot(answerDelay, this, [this, handle, response, results, picking] {
        if (picking && mode == Mode::Vanish)
            portalBus.unregisterService(serviceName);
        else if (!picking || mode != Mode::Silent)
            respond(portalBus, handle, response, results);
    });
    return true;
}
