#pragma once

#include "picking/FallibleColorSampler.h"

#include <QDBusConnection>
#include <QVariantMap>

class QDBusPendingCallWatcher;
class QDBusServiceWatcher;

// Picks through the desktop portal's Screenshot.PickColor, the only way to
// read the screen on Wayland. The request handle is subscribed before the
// call, under a token nobody can guess, and only the portal's own Response
// counts. Fails (so that the caller can fall back) on no bus, no portal, an
// error reply, an error response or a portal that goes away mid-pick.
class PortalColorSampler : public FallibleColorSampler
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
    // A fresh token: 128 random bits from the system's secure generator.
    static QString newHandleToken();

private slots:
    void handleResponse(uint response, const QVariantMap &results);

private:
    void handleReply(QDBusPendingCallWatcher *watcher);
    bool subscribe(const QString &path);
    void unsubscribe();
    void fail(const QString &reason);
    void finish();

    QDBusConnection m_bus;
    QString m_subscribedPath;
    QDBusServiceWatcher *m_serviceWatcher = nullptr;
    bool m_finished = false;
};
