#pragma once

#include "picking/SampledColor.h"
#include "picking/ScreenCapture.h"

#include <QList>
#include <QObject>
#include <QPointF>
#include <QPointer>

#include <functional>
#include <optional>

class PrecisionColorPickerView;

// The program's own screen loupe. A run freezes every screen, covers each
// with an overlay that shows the frozen image and, next to the pointer, an
// 11 x 11 magnified grid; a click, Return or Enter picks the centre pixel,
// Escape cancels, arrows nudge the pointer by one point. The result goes to
// the completion: a color, or none for a cancel.
//
// A QObject only so that the overlays can hold it weakly (QPointer); it
// publishes nothing.
class PrecisionColorPicker : public QObject
{
    Q_OBJECT

public:
    using Completion = std::function<void(const std::optional<SampledColor> &)>;

    explicit PrecisionColorPicker(Completion completion = {}, QObject *parent = nullptr);
    ~PrecisionColorPicker() override;

    void setCompletion(Completion completion) { m_completion = std::move(completion); }

    // Captures every screen, then shows the overlays. Returns why no run
    // could start, or an empty text when it is on screen.
    QString start();
    // Starts a run on screens captured beforehand (benchmarks, tests).
    void startWithCaptures(QList<ScreenCapture> captures);
    bool isRunning() const { return !m_overlayWindows.isEmpty(); }

    QPointF currentPosition() const { return m_currentPosition; }
    // The pointer was seen at a global point: remember it, redraw.
    void setCurrentPosition(QPointF position);
    // Arrow keys: moves the real pointer by a delta in points, kept on the
    // screen it is on, landing on a whole point so the warp is exact.
    void moveCursor(QPointF delta);

    // The frozen screen color at a global point, or none when the point
    // lies on no captured pixel.
    std::optional<SampledColor> sampleColor(QPointF globalPoint) const;

    // Sample at a point, stop, then complete with the color.
    void pickAt(QPointF globalPoint);
    // Stop, then complete with none.
    void cancel();
    // Ends the run: pointer visible again, every overlay closed for good.
    // The completion is kept and not called.
    void stop();

    QList<PrecisionColorPickerView *> overlayWindows() const;
    PrecisionColorPickerView *pickerView() const;
    const QList<ScreenCapture> &captures() const { return m_captures; }

private:
    const ScreenCapture *captureAt(QPointF globalPoint) const;
    void complete(const std::optional<SampledColor> &color);

    QList<QPointer<PrecisionColorPickerView>> m_overlayWindows;
    Completion m_completion;
    QPointF m_currentPosition;
    QPointer<PrecisionColorPickerView> m_pickerView;
    QList<ScreenCapture> m_captures;
    bool m_pointerHidden = false;
};
