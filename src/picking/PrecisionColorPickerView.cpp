#include "PrecisionColorPickerView.h"

#include "picking/LoupeGeometry.h"
#include "picking/LoupeLayers.h"
#include "picking/PrecisionColorPicker.h"

#include <QGuiApplication>
#include <QEnterEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPalette>
#include <QTimer>
#include <QWindow>

namespace {

constexpr double crosshairReach = 8.0;
constexpr double crosshairGap = 3.0;

} // namespace

PrecisionColorPickerView::PrecisionColorPickerView(PrecisionColorPicker *picker,
                                                   const ScreenCapture &capture)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint
                           | Qt::X11BypassWindowManagerHint | Qt::NoDropShadowWindowHint)
    , m_picker(picker)
    , m_screenFrame(capture.geometry)
    , m_cursorPosition(0.0, 0.0)
    , m_loupeSize(LoupeGeometry::loupeSize)
    , m_gridSize(LoupeGeometry::gridSize)
    , m_capture(capture)
    , m_layers(m_loupeSize, capture.devicePixelRatio, QGuiApplication::palette())
    , m_cells(LoupeGeometry::gridSize, LoupeGeometry::gridSize, QImage::Format_RGB32)
{
    // Every pixel is painted from the frozen image; nothing to clear first.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QStringLiteral("Precision color picker"));
    if (capture.screen)
        setScreen(capture.screen);
    setGeometry(capture.geometry);
    createWinId();
    windowHandle()->installEventFilter(this);
}

bool PrecisionColorPickerView::isOnThisScreen(QPointF position) const
{
    return m_capture.contains(position);
}

bool PrecisionColorPickerView::showsLoupe() const
{
    return isOnThisScreen(m_cursorPosition);
}

QRectF PrecisionColorPickerView::loupeRect() const
{
    return LoupeGeometry::loupeRect(m_cursorPosition, QRectF(m_screenFrame), m_loupeSize)
        .translated(-QPointF(m_screenFrame.topLeft()));
}

QPointF PrecisionColorPickerView::crosshairCentre(QPointF position) const
{
    // Centred on the pixel that a pick would read, so the open square frames
    // exactly that pixel at any device pixel ratio.
    const double ratio = m_capture.devicePixelRatio;
    const auto pixel = LoupeGeometry::pixelIndex(position, QRectF(m_screenFrame), ratio);
    return {(double(pixel.x) + 0.5) / ratio, (double(pixel.y) + 0.5) / ratio};
}

QRegion PrecisionColorPickerView::loupeRegion(QPointF position) const
{
    if (!isOnThisScreen(position))
        return {};
    const QRectF loupe = LoupeGeometry::loupeRect(position, QRectF(m_screenFrame), m_loupeSize)
                             .translated(-QPointF(m_screenFrame.topLeft()));
    const double reach = LoupeLayers::margin;
    QRegion region(loupe.adjusted(-reach, -reach, reach, reach).toAlignedRect());
    const QPointF centre = crosshairCentre(position);
    const double cross = crosshairReach + 2.0;
    region += QRectF(centre.x() - cross, centre.y() - cross, 2 * cross, 2 * cross).toAlignedRect();
    return region;
}

void PrecisionColorPickerView::setCursorPosition(QPointF position)
{
    if (position == m_cursorPosition)
        return;
    const QRegion dirty = loupeRegion(m_cursorPosition) + loupeRegion(position);
    m_cursorPosition = position;
    if (!dirty.isEmpty())
        update(dirty);
}

bool PrecisionColorPickerView::eventFilter(QObject *watched, QEvent *event)
{
    // Mouse events are taken at the window, before the widget layer rounds
    // their positions to whole points: at a device pixel ratio of 2 the
    // pointer can rest on an odd device pixel, which a whole point misses.
    if (watched == windowHandle()) {
        switch (event->type()) {
        case QEvent::MouseMove:
            mouseMoveEvent(static_cast<QMouseEvent *>(event));
            return true;
        case QEvent::MouseButtonPress:
            mousePressEvent(static_cast<QMouseEvent *>(event));
            return true;
        default:
            break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void PrecisionColorPickerView::takeKeyboard(int attemptsLeft)
{
    activateWindow();
    raise();
    setFocus(Qt::OtherFocusReason);
    QWindow *window = windowHandle();
    if (window && window->isExposed() && window->setKeyboardGrabEnabled(true))
        return;
    if (attemptsLeft > 0) {
        QTimer::singleShot(10, this, [this, attemptsLeft] {
            if (isVisible())
                takeKeyboard(attemptsLeft - 1);
        });
    }
}

void PrecisionColorPickerView::releaseKeyboardGrab()
{
    if (QWindow *window = windowHandle())
        window->setKeyboardGrabEnabled(false);
}

void PrecisionColorPickerView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const double ratio = m_capture.devicePixelRatio;
    for (const QRect &rect : event->region()) {
        const QRectF source(rect.x() * ratio, rect.y() * ratio, rect.width() * ratio,
                            rect.height() * ratio);
        painter.drawImage(QRectF(rect), m_capture.image, source);
    }
    if (!showsLoupe())
        return;
    drawLoupe(painter);
    drawCrosshair(painter);
}

void PrecisionColorPickerView::drawLoupe(QPainter &painter) const
{
    using namespace LoupeGeometry;
    const QRectF loupe = loupeRect();
    m_layers.drawUnderGrid(painter, loupe);

    // The 11 x 11 pixels around the centre, black off the image, drawn
    // magnified in one go: unsmoothed, each pixel becomes one square cell.
    const auto centre = pixelIndex(m_cursorPosition, QRectF(m_screenFrame),
                                   m_capture.devicePixelRatio);
    const QImage &image = m_capture.image;
    for (int row = -gridReach; row <= gridReach; ++row) {
        auto *line = reinterpret_cast<QRgb *>(m_cells.scanLine(row + gridReach));
        for (int column = 0; column < LoupeGeometry::gridSize; ++column) {
            const std::int64_t x = centre.x - gridReach + column;
            const std::int64_t y = centre.y + row;
            QRgb color = qRgb(0, 0, 0);
            if (x >= 0 && y >= 0 && x < image.width() && y < image.height())
                color = qPremultiply(image.pixel(int(x), int(y))) | 0xff000000u;
            line[column] = color;
        }
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.drawImage(loupe, m_cells);

    m_layers.drawOverGrid(painter, loupe);
}

void PrecisionColorPickerView::drawCrosshair(QPainter &painter) const
{
    const QPointF c = crosshairCentre(m_cursorPosition);
    const QLineF segments[] = {
        {c.x() - crosshairReach, c.y(), c.x() - crosshairGap, c.y()},
        {c.x() + crosshairGap, c.y(), c.x() + crosshairReach, c.y()},
        {c.x(), c.y() + crosshairGap, c.x(), c.y() + crosshairReach},
        {c.x(), c.y() - crosshairReach, c.x(), c.y() - crosshairGap},
    };
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(QPen(Qt::white, 2.0, Qt::SolidLine, Qt::FlatCap));
    painter.drawLines(segments, 4);
    painter.setPen(QPen(Qt::black, 1.0, Qt::SolidLine, Qt::FlatCap));
    painter.drawLines(segments, 4);
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void PrecisionColorPickerView::keyPressEvent(QKeyEvent *event)
{
    PrecisionColorPicker *picker = m_picker.data();
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // The stored position, not a fresh pointer read: what the loupe shows.
        if (picker)
            picker->pickAt(picker->currentPosition());
        return;
    case Qt::Key_Escape:
        if (picker)
            picker->cancel();
        return;
    case Qt::Key_Left:
        if (picker)
            picker->moveCursor({-1.0, 0.0});
        return;
    case Qt::Key_Right:
        if (picker)
            picker->moveCursor({1.0, 0.0});
        return;
    case Qt::Key_Up:
        if (picker)
            picker->moveCursor({0.0, -1.0});
        return;
    case Qt::Key_Down:
        if (picker)
            picker->moveCursor({0.0, 1.0});
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void PrecisionColorPickerView::enterEvent(QEnterEvent *event)
{
    // The overlay appearing under a still pointer: the first exact position,
    // finer than the whole point the run started from.
    if (PrecisionColorPicker *picker = m_picker.data())
        picker->setCurrentPosition(event->globalPosition());
}

void PrecisionColorPickerView::mouseMoveEvent(QMouseEvent *event)
{
    if (PrecisionColorPicker *picker = m_picker.data())
        picker->setCurrentPosition(event->globalPosition());
}

void PrecisionColorPickerView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    if (PrecisionColorPicker *picker = m_picker.data()) {
        picker->setCurrentPosition(event->globalPosition());
        picker->pickAt(picker->currentPosition());
    }
}
