#include "PortalColorSampler.h"

#include "picking/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QTimer>

namespace {

// results["color"] is (ddd): sRGB components in 0..1.
std::optional<SampledColor> colorFromResults(const QVariantMap &results)
{
    const QVariant value = results.value(QStringLiteral("color"));
    if (!value.canConvert<QDBusArgument>())
        return std::nullopt;
    const QDBusArgument argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("(ddd)"))
        return std::nullopt;
    SampledColor color;
    argument.beginStructure();
    argument >> color.red >> color.green >> color.blue;
    argument.endStructure();
    return color;
}

} // namespace

PortalColorSampler::PortalColorSampler(QObject *parent)
    : PortalColorSampler(QDBusConnection::sessionBus(), parent)
{
}

PortalColorSampler::PortalColorSampler(const QDBusConnection &bus, QObject *parent)
    : ColorSampler(parent)
    , m_bus(bus)
{
}

void PortalColorSampler::start()
{
    if (!m_bus.isConnected()) {
        const QString detail = m_bus.lastError().message();
        const QString reason = QStringLiteral("no session bus")
            + (detail.isEmpty() ? QString() : QStringLiteral(" (") + detail + u')');
        // Reported after start() returns, like every other outcome.
        QTimer::singleShot(0, this, [this, reason] { fail(reason); });
        return;
    }
    // A portal that dies mid-pick would otherwise leave the pick hanging.
    auto *serviceWatcher = new QDBusServiceWatcher(PortalRequest::portalService, m_bus,
                                                   QDBusServiceWatcher::WatchForUnregistration, this);
    connect(serviceWatcher, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { fail(QStringLiteral("the desktop portal went away")); });

    QDBusMessage call = QDBusMessage::createMethodCall(
        PortalRequest::portalService, PortalRequest::portalPath,
        QStringLiteral("org.freedesktop.portal.Screenshot"), QStringLiteral("PickColor"));
    call << QString() << QVariantMap();
    m_request = new PortalRequest(m_bus, call, this);
    connect(m_request, &PortalRequest::responded, this, &PortalColorSampler::handleResponse);
    connect(m_request, &PortalRequest::failed, this, [this](const QString &reason) {
        fail(QStringLiteral("no desktop portal color picker (") + reason + u')');
    });
    m_request->start();
}

void PortalColorSampler::handleResponse(uint response, const QVariantMap &results)
{
    const std::optional<SampledColor> color = colorFromResults(results);
    if (response == 1) {
        if (finish())
            emit cancelled();
    } else if (response == 2) {
        // The portal was there and asked: its backend ended the pick
        // (wlroots' answers a cancelled choice so). Not a reason to try
        // another way of picking, nor "no way to pick here".
        if (finish())
            emit endedWithoutColor(
                QStringLiteral("the desktop portal ended the pick without a color (response 2)"));
    } else if (response != 0) {
        fail(QStringLiteral("the desktop portal could not pick a color (response %1)").arg(response));
    } else if (!color) {
        fail(QStringLiteral("the desktop portal answered without a color"));
    } else if (finish()) {
        emit colorSampled(*color);
    }
}

bool PortalColorSampler::finish()
{
    if (m_finished)
        return false;
    m_finished = true;
    // Whatever the portal says later is no longer heard. Deleted later: this
    // may run inside the request's own signal.
    if (m_request) {
        m_request->disconnect(this);
        m_request->deleteLater();
    }
    return true;
}

void PortalColorSampler::fail(const QString &reason)
{
    if (finish())
        emit failed(reason);
}
