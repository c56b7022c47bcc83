#pragma once

#include "picking/SampledColor.h"

#include <QImage>
#include <QWidget>

#include <memory>
#include <vector>

class QScreen;
class PatternWindow;

// Every screen filled with colors that name their own device pixel of the
// root window, so a sampled color tells exactly which pixel was read.
// Never black.
QRgb patternPixel(int x, int y);
SampledColor patternColor(QPoint rootPixel);
// A screen's device pixels within the root window (its origin is the same
// in points and pixels), and what the screens show in a rectangle of them.
QRect rootPixels(const QScreen *screen);
QImage rootShot(const QRect &rootPixels);

// Frameless windows over every screen painting the pattern, one device
// pixel per pattern pixel.
class ScreenPattern
{
public:
    ScreenPattern();
    ~ScreenPattern();
    // Shows the windows and waits until the screens really show them.
    bool showAndSettle();
    // After an overlay covered the screens: waits until every window has
    // painted again, so that the next run freezes the pattern.
    void markCovered();
    bool waitUntilRepainted();

private:
    std::vector<std::unique_ptr<PatternWindow>> m_windows;
};

// The real pointer, in device pixels of the root window: moved through
// xdotool, read from the X server.
bool xdotool(const QStringList &arguments);
bool movePointer(QPoint rootPixel);
QPoint pointerPixel();
