#include "LoupeColorSampler.h"

#include "picking/LoupeGeometry.h"
#include "picking/LoupeOverlay.h"

#include <QCursor>
#include <QGuiApplication>
#include <QTimer>

#include <cmath>
#include <optional>

LoupeColorSampler::~LoupeColorSampler()
{
    stop();
}

void LoupeColorSampler::start()
{
    // Frozen before any overlay exists, so the loupe never magnifies itself
    // and an uncomposited desktop never shows a black overlay.
    QString reason;
    QList<ScreenCapture> captures = ScreenCapture::captureAll(&reason);
    if (captures.isEmpty()) {
        // Reported after start() returns, like every other outcome.
        QTimer::singleShot(0, this, [this, reason] { emit failed(reason); });
        return;
    }
    startWithCaptures(std::move(captures));
}

void LoupeColorSampler::startWithCaptures(QList<ScreenCapture> captures)
{
    Q_ASSERT(!captures.isEmpty());
    stop();
    m_captures = std::move(captures);
    m_currentPosition = QCursor::pos();
    const ScreenCapture *pointerScreen = &screenFor(m_currentPosition);
    for (const ScreenCapture &capture : std::as_const(m_captures)) {
        auto *overlay = new LoupeOverlay(capture);
        overlay->setCursorPosition(m_currentPosition);
        connect(overlay, &LoupeOverlay::moved, this, &LoupeColorSampler::moveTo);
        connect(overlay, &LoupeOverlay::nudged, this, &LoupeColorSampler::nudge);
        connect(overlay, &LoupeOverlay::picked, this, &LoupeColorSampler::pick);
        connect(overlay, &LoupeOverlay::cancelled, this, &LoupeColorSampler::cancel);
        m_overlays.append(overlay);
        if (&capture == pointerScreen)
            m_activeOverlay = overlay;
    }
    // The magnified grid and the crosshair mark the spot; the arrow would
    // only cover the pixel being aimed at.
    QGuiApplication::setOverrideCursor(QCursor(Qt::BlankCursor));
    m_pointerHidden = true;
    for (const auto &overlay : std::as_const(m_overlays))
        overlay->show();
    m_activeOverlay->takeKeyboard();
}

LoupeOverlay *LoupeColorSampler::activeOverlay() const
{
    return m_activeOverlay;
}

void LoupeColorSampler::moveTo(QPointF position)
{
    if (position == m_currentPosition)
        return;
    m_currentPosition = position;
    for (const auto &overlay : std::as_const(m_overlays)) {
        if (overlay)
            overlay->setCursorPosition(position);
    }
}

void LoupeColorSampler::nudge(QPoint delta)
{
    // Kept on the screen the pointer is on, and on a whole point so that
    // the warp lands exactly there.
    const ScreenCapture &screen = screenFor(m_currentPosition);
    QPointF position = LoupeGeometry::clampToScreen(m_currentPosition + delta, QRectF(screen.geometry));
    position = QPointF(std::floor(position.x()), std::floor(position.y()));
    QCursor::setPos(screen.screen, position.toPoint());
    moveTo(position);
}

void LoupeColorSampler::pick()
{
    // Sampled first, at the stored position (what the loupe shows), then
    // the run ends; a point on no captured pixel ends it as a cancel.
    const ScreenCapture &screen = screenFor(m_currentPosition);
    const auto pixel =
        LoupeGeometry::pixelIndex(m_currentPosition, QRectF(screen.geometry), screen.devicePixelRatio);
    std::optional<SampledColor> color;
    if (pixel.x >= 0 && pixel.y >= 0 && pixel.x < screen.image.width() && pixel.y < screen.image.height())
        color = LoupeGeometry::colorFromPixel(screen.image.pixel(int(pixel.x), int(pixel.y)));
    stop();
    if (color)
        emit colorSampled(*color);
    else
        emit cancelled();
}

void LoupeColorSampler::cancel()
{
    stop();
    emit cancelled();
}

void LoupeColorSampler::stop()
{
    if (m_pointerHidden) {
        QGuiApplication::restoreOverrideCursor();
        m_pointerHidden = false;
    }
    const auto overlays = std::exchange(m_overlays, {});
    for (const auto &overlay : overlays) {
        if (!overlay)
            continue;
        overlay->disconnect(this);
        overlay->releaseKeyboardGrab();
        overlay->hide();
        // Possibly inside this overlay's own event handler: delete it later.
        overlay->deleteLater();
    }
    m_activeOverlay.clear();
    m_captures.clear();
}

const ScreenCapture &LoupeColorSampler::screenFor(QPointF point) const
{
    for (const ScreenCapture &capture : m_captures) {
        if (capture.contains(point))
            return capture;
    }
    return m_captures.first();
}
