#pragma once

#include "picking/ColorSampler.h"

#include <QList>
#include <QPointF>
#include <QPointer>

#include <memory>
#include <optional>
#include <vector>

class FrozenScreen;
class LoupeOverlay;

// The program's own screen loupe. A run freezes every screen and covers
// each with a LoupeOverlay; a click, Return or Enter picks what the loupe's
// readout shows (the device pixel under the pointer, or the mean of the
// area around it that keys 1, 3, 5 and 9 choose) and ends the run, with
// Shift it picks and goes on; Escape ends it; the arrow keys move the real
// pointer by one device pixel; the wheel, + and - zoom the grid. The area
// and the zoom hold for later runs. Fails where the screen cannot be read.
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

protected:
    // Runs the loupe over screens frozen one way or another.
    void run(std::vector<std::unique_ptr<FrozenScreen>> screens);

private:
    void moveTo(QPointF position);
    void nudge(QPoint delta);
    void pick(bool keepGoing);
    void chooseArea(int areaSize);
    void zoom(int steps);
    // The color a pick would take now, if the pointer is on a screen.
    std::optional<SampledColor> colorHere() const;
    // Tells every overlay the zoom, the area and the readout.
    void showLoupe();
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
    // Chosen in one run, kept for the next while the program runs.
    static inline int s_gridSize = 11;
    static inline int s_areaSize = 1;
};
