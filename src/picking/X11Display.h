#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>

#include <optional>

// What the loupe needs from an X server and Qt does not offer: the pointer
// and the screen's pixels in device pixels, exactly, whatever the scale
// factor. Coordinates are the root window's: device pixels across every
// screen. Off X11 (or built without xcb) every answer is "cannot".
namespace X11Display {

// Whether the program talks to an X server.
bool isAvailable();

// Whether a compositing manager runs: a window then shows only what it
// paints, never what was on the screen beneath it.
bool isComposited();

// Where the pointer is.
std::optional<QPoint> pointerPosition();

// The root window's size: every screen's device pixels.
std::optional<QSize> rootSize();

// Moves the pointer onto a device pixel; false when it cannot.
bool warpPointer(QPoint position);

// What the screen shows in a rectangle, as RGB32; null
// when it cannot be read in that form (a server of another pixel format).
QImage readPixels(const QRect &rect);

} // namespace X11Display
