#pragma once

#include "picking/SampledColor.h"

#include <QImage>
#include <QRgb>
#include <QWidget>

#include <memory>
#include <vector>

class QScreen;

// Every screen filled with colors that name their own device pixel of the
// root window, so a sampled color tells exactly which pixel was read.
// Never black.
QRgb patternPixel(int x, int y);
SampledColor patternColor(QPoint rootPixel);

// A screen's device pixels within the root window: its origin is the same
// in points and pixels.
QRect rootPixels(const QScreen *screen);

// What the screen shows, in its device pixels.
QImage screenShot(QScreen *screen);
// What the screens show in a rectangle of the root window's pixels.
QImage rootShot(const QRect &rootPixels);

// Frameless windows over every screen painting the pattern one device
// pixel per pattern pixel.
class ScreenPattern
{
public:
    ScreenPattern();
    ~ScreenPattern();
    // Shows the windows and waits until the screens really show them.
    bool showAndSettle();
    // Waits until the whole pattern is on screen again.
    bool waitUntilOnScreen();
    // After an overlay covered the screens: waits until every window has
    // painted the pattern again, so that the next run freezes the pattern.
    // (The X server handles the paints before any later request of ours.)
    void markCovered();
    bool waitUntilRepainted();

private:
    std::vector<std::unique_ptr<QWidget>> m_windows;
};

// Runs xdotool with the given arguments; true when it succeeded.
bool xdotool(const QStringList &arguments);
// Moves the real pointer onto a device pixel of the root window.
bool movePointer(QPoint rootPixel);
// Where the real pointer is, in device pixels of the root window.
QPoint pointerPixel();
