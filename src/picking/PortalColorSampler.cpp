#include "PortalColorSampler.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QRandomGenerator>
#include <QTimer>

namespace {

const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");
const QString screenshotInterface = QStringLiteral("org.freedesktop.portal.Screenshot");

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

// A fresh request token: 128 random bits from the system's secure generator.
QString newHandleToken()
{
    quint32 words[4];
    QRandomGenerator::system()->fillRange(words);
    QString token = QStringLiteral("tintwright_");
    for (quint32 word : words)
        token += QStringLiteral("%1").arg(word, 8, 16, QLatin1Char('0'));
    return token;
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

PortalColorSampler::~PortalColorSampler()
{
    unsubscribe();
}

QString PortalColorSampler::requestPath(const QDBusConnection &bus, const QString &token)
{
    QString sender = bus.baseService();
    if (sender.startsWith(u':'))
        sender.remove(0, 1);
    sender.replace(u'.', u'_');
    return portalPath + QStringLiteral("/request/") + sender + u'/' + token;
}

void PortalColorSampler::start()
{
    if (!m_bus.isConnected()) {
        const QString detail = m_bus.lastError().message();
        failSoon(QStringLiteral("no session bus")
                 + (detail.isEmpty() ? QString() : QStringLiteral(" (") + detail + u')'));
        return;
    }
    const QString token = newHandleToken();
    // Subscribed before the call: a quick portal may answer before the call
    // itself returns.
    if (!subscribe(requestPath(m_bus, token))) {
        failSoon(QStringLiteral("cannot listen for the portal's answer"));
        return;
    }
    // A portal that dies mid-pick would otherwise leave the pick hanging.
    auto *serviceWatcher =
        new QDBusServiceWatcher(portalService, m_bus, QDBusServiceWatcher::WatchForUnregistration, this);
    connect(serviceWatcher, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { fail(QStringLiteral("the desktop portal went away")); });

    QDBusMessage call = QDBusMessage::createMethodCall(portalService, portalPath, screenshotInterface,
                                                       QStringLiteral("PickColor"));
    call << QString() << QVariantMap{{QStringLiteral("handle_token"), token}};
    auto *replyWatcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(replyWatcher, &QDBusPendingCallWatcher::finished, this, &PortalColorSampler::handleReply);
}

void PortalColorSampler::handleReply(QDBusPendingCallWatcher *watcher)
{
    watcher->deleteLater();
    const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
    if (reply.isError()) {
        fail(QStringLiteral("no desktop portal color picker (") + reply.error().name() + QStringLiteral(": ")
             + reply.error().message() + u')');
        return;
    }
    // Portals before version 0.9 ignore handle_token and name the request
    // themselves; the answer then comes on the returned path.
    const QString handle = reply.value().path();
    if (!m_finished && handle != m_subscribedPath && !subscribe(handle))
        fail(QStringLiteral("cannot listen for the portal's answer"));
}

void PortalColorSampler::handleResponse(uint response, const QVariantMap &results)
{
    const std::optional<SampledColor> color = colorFromResults(results);
    if (response == 1) {
        if (finish())
            emit cancelled();
    } else if (response != 0) {
        fail(QStringLiteral("the desktop portal could not pick a color (response %1)").arg(response));
    } else if (!color) {
        fail(QStringLiteral("the desktop portal answered without a color"));
    } else if (finish()) {
        emit colorSampled(*color);
    }
}

bool PortalColorSampler::subscribe(const QString &path)
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

void PortalColorSampler::unsubscribe()
{
    if (m_subscribedPath.isEmpty())
        return;
    m_bus.disconnect(portalService, m_subscribedPath, requestInterface, QStringLiteral("Response"),
                     QStringLiteral("ua{sv}"), this, SLOT(handleResponse(uint, QVariantMap)));
    m_subscribedPath.clear();
}

bool PortalColorSampler::finish()
{
    if (m_finished)
        return false;
    m_finished = true;
    unsubscribe();
    return true;
}

void PortalColorSampler::fail(const QString &reason)
{
    if (finish())
        emit failed(reason);
}

void PortalColorSampler::failSoon(const QString &reason)
{
    // Reported after start() returns, like every other outcome.
    QTimer::singleShot(0, this, [this, reason] { fail(reason); });
}
