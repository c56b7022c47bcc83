#pragma once

#include "picking/ColorSampler.h"

#include <QDBusConnection>
#include <QVariantMap>

class QDBusPendingCallWatcher;

// Picks through the desktop portal's Screenshot.PickColor, the only way to
// read the screen on Wayland. The request handle is subscribed before the
// call, under a token nobody can guess, and only the portal's own Response
// counts. Fails (so that the caller can fall back) on no bus, no portal, an
// error reply, an error response or a portal that goes away mid-pick.
class PortalColorSampler : public ColorSampler
{
    Q_OBJECT

public:
    static inline const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
    static inline const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");

    explicit PortalColorSampler(QObject *parent = nullptr);
    PortalColorSampler(const QDBusConnection &bus, QObject *parent = nullptr);
    ~PortalColorSampler() override;

    void start() override;

    // The request path the portal will use for a token on this bus.
    static QString requestPath(const QDBusConnection &bus, const QString &token);

private slots:
    void handleResponse(uint response, const QVariantMap &results);

private:
    void handleReply(QDBusPendingCallWatcher *watcher);
    bool subscribe(const QString &path);
    void unsubscribe();
    // True the first time only: a sampler reports once.
    bool finish();
    void fail(const QString &reason);
    void failSoon(const QString &reason);

    QDBusConnection m_bus;
    QString m_subscribedPath;
    bool m_finished = false;
};
