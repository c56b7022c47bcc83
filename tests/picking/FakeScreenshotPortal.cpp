#include "FakeScreenshotPortal.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QTimer>

static const QString objectPath = QStringLiteral("/org/freedesktop/portal/desktop");
static const QString serviceName = QStringLiteral("org.freedesktop.portal.Desktop");

QDBusArgument &operator<<(QDBusArgument &argument, const PortalColor &color)
{
    argument.beginStructure();
    argument << color.red << color.green << color.blue;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalColor &color)
{
    argument.beginStructure();
    argument >> color.red >> color.green >> color.blue;
    argument.endStructure();
    return argument;
}

FakeScreenshotPortal::FakeScreenshotPortal(const QDBusConnection &bus, Mode mode, PortalColor color)
    : m_bus(bus)
    , m_mode(mode)
    , m_color(color)
{
    qDBusRegisterMetaType<PortalColor>();
}

FakeScreenshotPortal::~FakeScreenshotPortal()
{
    m_bus.unregisterObject(objectPath);
    m_bus.unregisterService(serviceName);
}

bool FakeScreenshotPortal::registerOnBus()
{
    return m_bus.registerObject(objectPath, this, QDBusConnection::ExportAllSlots)
        && m_bus.registerService(serviceName);
}

QVariantMap FakeScreenshotPortal::colorResults(PortalColor color)
{
    return {{QStringLiteral("color"), QVariant::fromValue(color)}};
}

void FakeScreenshotPortal::respond(const QString &path, uint response, const QVariantMap &results)
{
    QDBusMessage signal = QDBusMessage::createSignal(path, QStringLiteral("org.freedesktop.portal.Request"),
                                                     QStringLiteral("Response"));
    signal << response << results;
    m_bus.send(signal);
}

QDBusObjectPath FakeScreenshotPortal::PickColor(const QString &, const QVariantMap &options)
{
    const QString token = options.value(QStringLiteral("handle_token")).toString();
    const QString base =
        objectPath + QStringLiteral("/request/") + message().service().mid(1).replace(u'.', u'_') + u'/';
    tokens.append(token);
    predictedPaths.append(base + token);
    emit pickColorCalled();
    if (m_mode == Mode::ErrorReply) {
        sendErrorReply(QDBusError::AccessDenied, QStringLiteral("Screenshot portal is disabled"));
        return {};
    }
    const QString handle =
        base + (m_mode == Mode::MismatchedHandle ? QStringLiteral("portal_chosen_7") : token);
    returnedHandles.append(handle);
    QTimer::singleShot(answerDelay, this, [this, handle] {
        if (m_mode == Mode::Vanish)
            m_bus.unregisterService(serviceName);
        else if (m_mode != Mode::Silent)
            respond(handle,
                    m_mode == Mode::Cancel              ? 1
                        : m_mode == Mode::ErrorResponse ? 2
                                                        : 0,
                    m_mode == Mode::Color || m_mode == Mode::MismatchedHandle ? colorResults(m_color)
                                                                              : QVariantMap());
    });
    return QDBusObjectPath(handle);
}
