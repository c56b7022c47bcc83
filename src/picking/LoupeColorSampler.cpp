#include "LoupeColorSampler.h"

#include "picking/FrozenScreen.h"
#include "picking/LoupeGeometry.h"
#include "picking/LoupeOverlay.h"
#include "picking/X11Display.h"

#include "model/ColorFormats.h"

#include <QCursor>
#include <QGuiApplication>
#include <QTimer>
#include <QtMath>

#include <algorithm>
#include <optional>

LoupeColorSampler::~LoupeColorSampler()
{
    stop();
}

void LoupeColorSampler::start()
{
    stop();
    // Frozen before any overlay shows, so the loupe never magnifies itself.
    QString reason;
    std::vector<std::unique_ptr<FrozenScreen>> screens = FrozenScreen::freezeAll(&reason);
    if (screens.empty()) {
        // Reported after start() returns, like every other outcome.
        QTimer::singleShot(0, this, [this, reason] { emit failed(reason); });
        return;
    }
    run(std::move(screens));
}

void LoupeColorSampler::run(std::vector<std::unique_ptr<FrozenScreen>> screens)
{
    QList<LoupeOverlay *> overlays;
    for (auto &screen : screens) {
        auto *overlay = new LoupeOverlay(std::move(screen));
        connect(overlay, &LoupeOverlay::moved, this, &LoupeColorSampler::moveTo);
        connect(overlay, &LoupeOverlay::nudged, this, &LoupeColorSampler::nudge);
        connect(overlay, &LoupeOverlay::picked, this, &LoupeColorSampler::pick);
        connect(overlay, &LoupeOverlay::areaChosen, this, &LoupeColorSampler::chooseArea);
        connect(overlay, &LoupeOverlay::zoomed, this, &LoupeColorSampler::zoom);
        connect(overlay, &LoupeOverlay::cancelled, this, &LoupeColorSampler::cancel);
        overlays.append(overlay);
        m_overlays.append(overlay);
    }
    m_currentPosition = pointerPosition(overlays);
    m_activeOverlay = overlayAt(m_currentPosition);
    for (LoupeOverlay *overlay : overlays)
        overlay->setCursorPosition(m_currentPosition);
    showLoupe();
    // The magnified grid and the crosshair mark the spot; the arrow would
    // only cover the pixel being aimed at.
    QGuiApplication::setOverrideCursor(QCursor(Qt::BlankCursor));
    m_pointerHidden = true;
    // A Wayland client cannot place a window: each overlay asks to fill
    // its own output instead.
    const bool wayland = QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    for (LoupeOverlay *overlay : overlays) {
        if (wayland)
            overlay->showFullScreen();
        else
            overlay->show();
    }
    m_activeOverlay->takeKeyboard();
}

QPointF LoupeColorSampler::pointerPosition(const QList<LoupeOverlay *> &overlays)
{
    // In device pixels where the X server tells: a whole point can miss
    // the pixel under the pointer at a fractional ratio.
    if (const std::optional<QPoint> root = X11Display::pointerPosition()) {
        for (LoupeOverlay *overlay : overlays) {
            const FrozenScreen &screen = overlay->frozenScreen();
            if (screen.pixelRect().translated(screen.rootPixel(QPoint(0, 0))).contains(*root))
                return screen.pointFromRootPixel(*root);
        }
    }
    return QCursor::pos();
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
    showLoupe();
}

std::optional<SampledColor> LoupeColorSampler::colorHere() const
{
    LoupeOverlay *overlay = overlayAt(m_currentPosition);
    if (!overlay)
        return std::nullopt;
    FrozenScreen &screen = overlay->frozenScreen();
    const auto pixel =
        LoupeGeometry::pixelIndex(m_currentPosition, QRectF(screen.geometry()), screen.devicePixelRatio());
    if (!screen.pixelRect().contains(QPoint(int(pixel.x), int(pixel.y))))
        return std::nullopt;
    const QRect area = LoupeGeometry::sampleArea(pixel, s_areaSize, screen.pixelRect());
    screen.require(area);
    return LoupeGeometry::meanColor(screen.image(), area);
}

void LoupeColorSampler::showLoupe()
{
    const std::optional<SampledColor> color = colorHere();
    const QString readout = color ? hexString(color->red, color->green, color->blue) : QString();
    for (const auto &overlay : std::as_const(m_overlays)) {
        if (overlay)
            overlay->setLoupe(s_gridSize, s_areaSize, readout);
    }
}

void LoupeColorSampler::chooseArea(int areaSize)
{
    s_areaSize = areaSize;
    showLoupe();
}

void LoupeColorSampler::zoom(int steps)
{
    using LoupeGeometry::gridSizes;
    const auto *at = std::find(std::begin(gridSizes), std::end(gridSizes), s_gridSize);
    const qsizetype index =
        std::clamp<qsizetype>((at - std::begin(gridSizes)) + steps, 0, qsizetype(std::size(gridSizes)) - 1);
    s_gridSize = gridSizes[index];
    showLoupe();
}

void LoupeColorSampler::nudge(QPoint delta)
{
    // One device pixel, kept on the screen the pointer is on; the stored
    // position goes to the middle of that pixel, the real pointer onto it.
    LoupeOverlay *overlay = overlayAt(m_currentPosition);
    if (!overlay)
        return;
    using namespace LoupeGeometry;
    const FrozenScreen &screen = overlay->frozenScreen();
    const QRectF frame(screen.geometry());
    PixelIndex pixel = pixelIndex(m_currentPosition, frame, screen.devicePixelRatio());
    pixel = clampToScreen({pixel.x + delta.x(), pixel.y + delta.y()}, screen.pixelRect());
    const QPointF position = pixelCentre(pixel, frame, screen.devicePixelRatio());
    if (!X11Display::warpPointer(screen.rootPixel(QPoint(int(pixel.x), int(pixel.y)))))
        QCursor::setPos(screen.screen(), QPoint(qFloor(position.x()), qFloor(position.y())));
    moveTo(position);
}

void LoupeColorSampler::pick(bool keepGoing)
{
    // Sampled first, at the stored position (what the loupe shows), then
    // the run ends; a point on no frozen pixel ends it as a cancel.
    const std::optional<SampledColor> color = colorHere();
    if (keepGoing && color) {
        emit colorKept(*color);
        return;
    }
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
}

LoupeOverlay *LoupeColorSampler::overlayAt(QPointF point) const
{
    for (const auto &overlay : m_overlays) {
        if (overlay && overlay->frozenScreen().contains(point))
            return overlay;
    }
    return m_overlays.isEmpty() ? nullptr : m_overlays.first().data();
}
