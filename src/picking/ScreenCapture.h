#pragma once

#include <QImage>
#include <QList>
#include <QPointF>
#include <QRect>
#include <QString>

class QScreen;

// One screen frozen at the start of a loupe run: its geometry in global
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

    // Captures every screen, once. When the screen cannot be read here,
    // returns an empty list and says why in whyNot.
    static QList<ScreenCapture> captureAll(QString *whyNot = nullptr);
};
