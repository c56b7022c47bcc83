#pragma once

#include "picking/ColorSampler.h"

#include <QDBusConnection>
#include <QPointer>
#include <QVariantMap>

class PortalRequest;

// Picks through the desktop portal's Screenshot.PickColor, the only way to
// read the screen on Wayland; the request itself follows PortalRequest's
// discipline (only the portal's own Response counts). Fails (so that the
// caller can fall back) on no bus, no portal, an error reply, an error
// response or a portal that goes away mid-pick.
class PortalColorSampler : public ColorSampler
{
    Q_OBJECT

public:
    explicit PortalColorSampler(QObject *parent = nullptr);
    PortalColorSampler(const QDBusConnection &bus, QObject *parent = nullptr);

    void start() override;

private:
    void handleResponse(uint response, const QVariantMap &results);
    // True the first time only: a sampler reports once.
    bool finish();
    void fail(const QString &reason);

    QDBusConnection m_bus;
    QPointer<PortalRequest> m_request;
    bool m_finished = false;
};
