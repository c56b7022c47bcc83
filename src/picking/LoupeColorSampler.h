#pragma once

#include "picking/ColorSampler.h"

#include <QList>
#include <QPointF>
#include <QPointer>

class FrozenScreen;
class LoupeOverlay;

// The program's own screen loupe, for where no desktop portal answers. A
// run freezes every screen and covers each with a LoupeOverlay; a click,
// Return or Enter picks the device pixel under the pointer, Escape
// cancels, the arrow keys move the real pointer by one device pixel. Fails
// where the screen cannot be read.
class LoupeColorSampler : public ColorSampler
{
    Q_OBJECT

public:
    using ColorSampler::ColorSampler;
    ~LoupeColorSampler() override;

    void start() override;

    bool isRunning() const { return !m_overlays.isEmpty(); }
    // The pointer's global position as last seen or moved to.
    QPointF currentPosition() const { return m_currentPosition; }
    // The overlay holding the keyboard: the one the pointer started on.
    LoupeOverlay *activeOverlay() const;

private:
    void moveTo(QPointF position);
    void nudge(QPoint delta);
    void pick();
    void cancel();
    // Ends the run: pointer visible again, every overlay closed for good.
    void stop();
    // The overlay of the screen a point lies on, else the first one.
    LoupeOverlay *overlayAt(QPointF point) const;
    // Where the pointer is, as exactly as the platform tells.
    static QPointF pointerPosition(const QList<LoupeOverlay *> &overlays);

    QList<QPointer<LoupeOverlay>> m_overlays;
    QPointer<LoupeOverlay> m_activeOverlay;
    QPointF m_currentPosition;
    bool m_pointerHidden = false;
};
