#pragma once

#include "picking/LoupeColorSampler.h"

#include <QDBusConnection>
#include <QPointer>

class PortalRequest;

// The loupe where the program cannot read the screen itself (Wayland): the
// desktop portal's Screenshot, asked without a dialog, gives one picture of
// every output, and the loupe runs over it, frozen. Fails, so that the
// portal's own PickColor can be asked instead, where the portal has no
// Screenshot, refuses it or the user declines.
class ScreenshotLoupeSampler : public LoupeColorSampler
{
    Q_OBJECT

public:
    explicit ScreenshotLoupeSampler(QObject *parent = nullptr);
    ScreenshotLoupeSampler(const QDBusConnection &bus, QObject *parent = nullptr);

    void start() override;

private:
    QDBusConnection m_bus;
    QPointer<PortalRequest> m_request;
};
