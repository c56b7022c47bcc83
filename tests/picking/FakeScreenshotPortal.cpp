#include "FakeScreenshotPortal.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QTimer>

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
    m_bus.unregisterObject(QStringLiteral("/org/freedesktop/portal/desktop"));
    m_bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
}

bool FakeScreenshotPortal::registerOnBus()
{
    return m_bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                                QDBusConnection::ExportAllSlots)
        && m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
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
    QString sender = message().service().mid(1);
    sender.replace(u'.', u'_');
    const QString base = QStringLiteral("/org/freedesktop/portal/desktop/request/") + sender + u'/';
    const QString predicted = base + token;
    tokens.append(token);
    predictedPaths.append(predicted);
    emit pickColorCalled();

    QString handle = predicted;
    switch (m_mode) {
    case Mode::Color:
        QTimer::singleShot(answerDelay, this, [this, handle] { respond(handle, 0, colorResults(m_color)); });
        break;
    case Mode::Cancel:
        QTimer::singleShot(answerDelay, this, [this, handle] { respond(handle, 1, {}); });
        break;
    case Mode::ErrorResponse:
        QTimer::singleShot(answerDelay, this, [this, handle] { respond(handle, 2, {}); });
        break;
    case Mode::ErrorReply:
        sendErrorReply(QDBusError::AccessDenied, QStringLiteral("Screenshot portal is disabled"));
        return {};
    case Mode::MismatchedHandle:
        handle = base + QStringLiteral("portal_chosen_7");
        QTimer::singleShot(50, this, [this, handle] { respond(handle, 0, colorResults(m_color)); });
        break;
    case Mode::NoColor:
        QTimer::singleShot(answerDelay, this, [this, handle] { respond(handle, 0, {}); });
        break;
    case Mode::Silent:
        break;
    case Mode::Vanish:
        QTimer::singleShot(answerDelay, this, [this] {
            m_bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        });
        break;
    }
    returnedHandles.append(handle);
    return QDBusObjectPath(handle);
}
