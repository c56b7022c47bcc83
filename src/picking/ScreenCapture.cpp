#include "ScreenCapture.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

bool ScreenCapture::contains(QPointF point) const
{
    return point.x() >= geometry.x() && point.x() < geometry.x() + geometry.width()
        && point.y() >= geometry.y() && point.y() < geometry.y() + geometry.height();
}

QList<ScreenCapture> ScreenCapture::captureAll(QString *whyNot)
{
    auto fail = [whyNot](const QString &reason) {
        if (whyNot)
            *whyNot = reason;
        return QList<ScreenCapture>();
    };
    // Wayland hides other clients' pixels; only a portal can read them.
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return fail(QStringLiteral("a Wayland session does not let programs read the screen"));
    if (QGuiApplication::screens().isEmpty())
        return fail(QStringLiteral("there is no screen"));
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
            return fail(QStringLiteral("the screen could not be captured"));
        capture.image.setDevicePixelRatio(capture.devicePixelRatio);
        captures.append(capture);
    }
    return captures;
}
