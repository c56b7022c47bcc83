#include "PrecisionColorPicker.h"

#include "picking/LoupeGeometry.h"
#include "picking/PrecisionColorPickerView.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <cmath>

PrecisionColorPicker::PrecisionColorPicker(Completion completion, QObject *parent)
    : QObject(parent)
    , m_completion(std::move(completion))
{
}

PrecisionColorPicker::~PrecisionColorPicker()
{
    stop();
}

QString PrecisionColorPicker::start()
{
    if (isRunning())
        return QStringLiteral("a picking run is already on screen");
    const QString reason = screenCaptureUnavailableReason();
    if (!reason.isEmpty())
        return reason;
    // Frozen before any overlay exists, so the loupe never magnifies itself
    // and an uncomposited desktop never shows a black overlay.
    QList<ScreenCapture> captures = captureAllScreens();
    if (captures.isEmpty())
        return QStringLiteral("the screen could not be captured");
    startWithCaptures(std::move(captures));
    return {};
}

void PrecisionColorPicker::startWithCaptures(QList<ScreenCapture> captures)
{
    stop();
    m_captures = std::move(captures);
    m_currentPosition = QCursor::pos();

    const ScreenCapture *pointerScreen = captureAt(m_currentPosition);
    for (const ScreenCapture &capture : std::as_const(m_captures)) {
        auto *view = new PrecisionColorPickerView(this, capture);
        view->setCursorPosition(m_currentPosition);
        m_overlayWindows.append(view);
        if (&capture == pointerScreen || !m_pickerView)
            m_pickerView = view;
    }
    // The magnified grid and the crosshair mark the spot; the arrow would
    // only cover the pixel being aimed at.
    QGuiApplication::setOverrideCursor(QCursor(Qt::BlankCursor));
    m_pointerHidden = true;
    for (const auto &view : std::as_const(m_overlayWindows))
        view->show();
    if (m_pickerView)
        m_pickerView->takeKeyboard();
}

void PrecisionColorPicker::setCurrentPosition(QPointF position)
{
    if (position == m_currentPosition)
        return;
    m_currentPosition = position;
    for (const auto &view : std::as_const(m_overlayWindows)) {
        if (view)
            view->setCursorPosition(position);
    }
}

void PrecisionColorPicker::moveCursor(QPointF delta)
{
    QPointF position = m_currentPosition + delta;
    const ScreenCapture *screen = captureAt(m_currentPosition);
    if (!screen && !m_captures.isEmpty())
        screen = &m_captures.first();
    if (screen) {
        position = LoupeGeometry::clampToScreen(position, QRectF(screen->geometry));
        position = QPointF(std::floor(position.x()), std::floor(position.y()));
        QCursor::setPos(screen->screen, position.toPoint());
    }
    setCurrentPosition(position);
}

std::optional<SampledColor> PrecisionColorPicker::sampleColor(QPointF globalPoint) const
{
    const ScreenCapture *capture = captureAt(globalPoint);
    if (!capture && !m_captures.isEmpty())
        capture = &m_captures.first();
    if (!capture)
        return std::nullopt;
    const auto pixel = LoupeGeometry::pixelIndex(globalPoint, QRectF(capture->geometry),
                                                 capture->devicePixelRatio);
    if (pixel.x < 0 || pixel.y < 0 || pixel.x >= capture->image.width()
        || pixel.y >= capture->image.height())
        return std::nullopt;
    return LoupeGeometry::colorFromPixel(capture->image.pixel(int(pixel.x), int(pixel.y)));
}

void PrecisionColorPicker::pickAt(QPointF globalPoint)
{
    const std::optional<SampledColor> color = sampleColor(globalPoint);
    stop();
    complete(color);
}

void PrecisionColorPicker::cancel()
{
    stop();
    complete(std::nullopt);
}

void PrecisionColorPicker::complete(const std::optional<SampledColor> &color)
{
    // The completion may well drop this picker; nothing follows it.
    if (m_completion) {
        const Completion completion = m_completion;
        completion(color);
    }
}

void PrecisionColorPicker::stop()
{
    if (m_pointerHidden) {
        QGuiApplication::restoreOverrideCursor();
        m_pointerHidden = false;
    }
    const auto windows = std::exchange(m_overlayWindows, {});
    for (const auto &view : windows) {
        if (!view)
            continue;
        view->releaseKeyboardGrab();
        view->hide();
        // Possibly inside this view's own event handler: delete it later.
        view->deleteLater();
    }
    m_pickerView.clear();
    m_captures.clear();
}

QList<PrecisionColorPickerView *> PrecisionColorPicker::overlayWindows() const
{
    QList<PrecisionColorPickerView *> views;
    for (const auto &view : m_overlayWindows) {
        if (view)
            views.append(view);
    }
    return views;
}

PrecisionColorPickerView *PrecisionColorPicker::pickerView() const
{
    return m_pickerView.data();
}

const ScreenCapture *PrecisionColorPicker::captureAt(QPointF globalPoint) const
{
    for (const ScreenCapture &capture : m_captures) {
        if (capture.contains(globalPoint))
            return &capture;
    }
    return nullptr;
}
