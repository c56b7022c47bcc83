#include "ScreenCapture.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

bool ScreenCapture::contains(QPointF point) const
{
    return point.x() >= geometry.x() && point.x() < geometry.x() + geometry.width()
        && point.y() >= geometry.y() && point.y() < geometry.y() + geometry.height();
}

QString screenCaptureUnavailableReason()
{
    const QString platform = QGuiApplication::platformName();
    if (platform.startsWith(QLatin1String("wayland")))
        return QStringLiteral("a Wayland session does not let programs read the screen");
    if (QGuiApplication::screens().isEmpty())
        return QStringLiteral("there is no screen");
    return {};
}

QList<ScreenCapture> captureAllScreens()
{
    QList<ScreenCapture> captures;
    for (QScreen *screen : QGuiApplication::screens()) {
        ScreenCapture capture;
        capture.screen = screen;
        capture.geometry = screen->geometry();
        capture.devicePixelRatio = screen->devicePixelRatio();
        // grabWindow(0) reads this screen's part of the desktop in device
        // pixels; toImage() of a raster pixmap shares its pixels.
        capture.image = screen->grabWindow(0).toImage();
        if (capture.image.isNull())
            return {};
        capture.image.setDevicePixelRatio(capture.devicePixelRatio);
        captures.append(capture);
    }
    return captures;
}
