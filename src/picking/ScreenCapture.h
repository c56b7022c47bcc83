#pragma once

#include <QImage>
#include <QList>
#include <QRect>
#include <QString>

class QScreen;

// One screen frozen at the start of a picking run: its geometry in global
// points, its device pixel ratio and its pixels (image size = geometry
// scaled by the ratio).
struct ScreenCapture
{
    QScreen *screen = nullptr;
    QRect geometry;
    double devicePixelRatio = 1.0;
    QImage image;

    // Whether a global point lies on this screen.
    bool contains(QPointF point) const;
};

// Why the screen cannot be read on this display, or an empty text when it
// can. Wayland hides other clients' pixels; only a portal can read them.
QString screenCaptureUnavailableReason();

// Captures every screen, once. Returns an empty list when any screen could
// not be read.
QList<ScreenCapture> captureAllScreens();
