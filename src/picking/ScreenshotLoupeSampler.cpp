#include "ScreenshotLoupeSampler.h"

#include "picking/FrozenScreen.h"
#include "picking/PortalRequest.h"

#include <QFile>
#include <QImage>
#include <QTimer>
#include <QUrl>

ScreenshotLoupeSampler::ScreenshotLoupeSampler(QObject *parent)
    : ScreenshotLoupeSampler(QDBusConnection::sessionBus(), parent)
{
}

ScreenshotLoupeSampler::ScreenshotLoupeSampler(const QDBusConnection &bus, QObject *parent)
    : LoupeColorSampler(parent)
    , m_bus(bus)
{
}

void ScreenshotLoupeSampler::start()
{
    if (!m_bus.isConnected()) {
        QTimer::singleShot(0, this, [this] { emit failed(QStringLiteral("no session bus")); });
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        PortalRequest::portalService, PortalRequest::portalPath,
        QStringLiteral("org.freedesktop.portal.Screenshot"), QStringLiteral("Screenshot"));
    call << QString() << QVariantMap{{QStringLiteral("interactive"), false}};
    m_request = new PortalRequest(m_bus, call, this);
    connect(m_request, &PortalRequest::failed, this, [this](const QString &reason) {
        emit failed(QStringLiteral("no desktop portal screenshot (") + reason + u')');
    });
    connect(m_request, &PortalRequest::responded, this, [this](uint response, const QVariantMap &results) {
        if (response != 0) {
            emit failed(QStringLiteral("the desktop portal gave no screenshot (response %1)").arg(response));
            return;
        }
        const QUrl uri(results.value(QStringLiteral("uri")).toString());
        // Read at once: some portals write every screenshot to one path.
        const QImage picture(uri.toLocalFile());
        QString reason;
        std::vector<std::unique_ptr<FrozenScreen>> screens = FrozenScreen::fromLayoutImage(picture, &reason);
        if (screens.empty()) {
            emit failed(reason);
            return;
        }
        run(std::move(screens));
    });
    m_request->start();
}
