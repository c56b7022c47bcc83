#pragma once

#include <QImage>
#include <QPointF>
#include <QRect>
#include <QRegion>
#include <QString>

#include <memory>
#include <vector>

class QScreen;

// One screen as it was when a loupe run began, in device pixels. On an X
// server without a compositing manager the screen itself keeps that
// picture: the overlay covers it, never clears it and paints only the
// loupe, so pixels are read from the screen only where the overlay is about
// to paint over them for the first time, and kept. Anywhere else the whole
// screen is read at once, before the overlay shows.
class FrozenScreen
{
public:
    // Every screen. When the screen cannot be read here, none, and why.
    static std::vector<std::unique_ptr<FrozenScreen>> freezeAll(QString *whyNot = nullptr);
    // Every screen cut out of one picture of the whole layout, as a desktop
    // portal's Screenshot delivers it: each screen's place in the picture
    // is its geometry scaled by the picture's size over the layout's. None
    // when the picture does not fit the layout.
    static std::vector<std::unique_ptr<FrozenScreen>> fromLayoutImage(const QImage &image,
                                                                      QString *whyNot = nullptr);
    // Whether the screen can be read here at all; if not, why.
    static bool canFreeze(QString *whyNot = nullptr);

    QScreen *screen() const { return m_screen; }
    // In global points.
    QRect geometry() const { return m_geometry; }
    double devicePixelRatio() const { return m_ratio; }
    // In global points, enough to cover every device pixel of the screen.
    QRect coveringGeometry() const;
    // The screen's own device pixels, (0, 0) at its top-left corner.
    QRect pixelRect() const { return QRect(QPoint(0, 0), m_pixelSize); }
    bool contains(QPointF point) const;

    // Whether the screen beneath the overlay keeps the frozen picture, so
    // that the overlay need paint only what it changes.
    bool keptByScreen() const { return m_keptByScreen; }

    // Makes the frozen pixels of a region (the screen's device pixels)
    // readable in image(); pixels outside the screen are left out.
    void require(const QRegion &pixels);
    // The frozen pixels, RGB32; valid wherever they were required.
    const QImage &image() const { return m_image; }

    // Device pixels of the root window (every screen's) against global
    // points on this screen.
    QPointF pointFromRootPixel(QPointF rootPixel) const;
    QPoint rootPixel(QPoint screenPixel) const { return m_geometry.topLeft() + screenPixel; }

private:
    FrozenScreen(QScreen *screen, bool keptByScreen);

    QScreen *m_screen;
    QRect m_geometry;
    double m_ratio;
    QSize m_pixelSize;
    bool m_keptByScreen;
    QImage m_image;
    QRegion m_known;
};
