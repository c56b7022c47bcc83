#include "LoupeOverlay.h"

#include "picking/LoupeGeometry.h"

#include <QEnterEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPalette>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <vector>

namespace {

constexpr double crosshairReach = 8.0;
constexpr double crosshairGap = 3.0;

// How far the loupe's fixed layers reach beyond its square, in points.
constexpr double layerMargin = 16.0;

// The loupe's drop shadow: black at 30 %, 2 points down, blurred by 8.
constexpr double shadowDrop = 2.0;
constexpr double shadowBlur = 4.0; // box radius; three passes blur by about 8
constexpr int shadowPasses = 3;
constexpr double shadowSpread = shadowBlur * shadowPasses;

// One box-blur pass over the alpha of a premultiplied black image, along
// rows (horizontal) or columns.
void boxBlur(QImage &image, int radius, bool horizontal)
{
    const int lines = horizontal ? image.height() : image.width();
    const int length = horizontal ? image.width() : image.height();
    std::vector<int> source(static_cast<size_t>(length));
    for (int line = 0; line < lines; ++line) {
        auto at = [&](int i) -> QRgb & {
            const int x = horizontal ? i : line;
            const int y = horizontal ? line : i;
            return reinterpret_cast<QRgb *>(image.scanLine(y))[x];
        };
        for (int i = 0; i < length; ++i)
            source[size_t(i)] = qAlpha(at(i));
        int sum = 0;
        for (int i = -radius; i <= radius; ++i)
            sum += (i >= 0 && i < length) ? source[size_t(i)] : 0;
        const int window = 2 * radius + 1;
        for (int i = 0; i < length; ++i) {
            at(i) = qRgba(0, 0, 0, sum / window);
            const int leaving = i - radius;
            const int entering = i + radius + 1;
            if (leaving >= 0)
                sum -= source[size_t(leaving)];
            if (entering < length)
                sum += source[size_t(entering)];
        }
    }
}

// The shadow that a rectangle of this size casts.
QImage renderShadow(QSizeF casting, double ratio)
{
    const QSize pixels(((casting + QSizeF(2, 2) * shadowSpread) * ratio).toSize());
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.scale(ratio, ratio);
        painter.fillRect(QRectF(QPointF(shadowSpread, shadowSpread), casting), QColor(0, 0, 0, 77));
    }
    const int radius = std::max(1, qRound(shadowBlur * ratio));
    for (int pass = 0; pass < shadowPasses; ++pass) {
        boxBlur(image, radius, true);
        boxBlur(image, radius, false);
    }
    image.setDevicePixelRatio(ratio);
    return image;
}

QImage transparentLayer(double ratio)
{
    const int side = qCeil((LoupeGeometry::loupeSize + 2 * layerMargin) * ratio);
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(ratio);
    return image;
}

// What never changes during a run, rendered once: under the grid the
// shadow, the background and the border; over it the cell outlines and the
// centre cell's double frame. A redraw then costs two image copies around
// the 11 x 11 cell colors.
void renderLayers(QImage &under, QImage &over, double ratio, const QPalette &palette)
{
    under = transparentLayer(ratio);
    over = transparentLayer(ratio);
    const QRectF loupe(layerMargin, layerMargin, LoupeGeometry::loupeSize, LoupeGeometry::loupeSize);
    {
        QPainter painter(&under);
        const QRectF background = loupe.adjusted(-2, -2, 2, 2);
        painter.drawImage(background.topLeft() + QPointF(-shadowSpread, -shadowSpread + shadowDrop),
                          renderShadow(background.size(), ratio));
        painter.fillRect(background, palette.color(QPalette::Window));
        QColor separator = palette.color(QPalette::WindowText);
        separator.setAlphaF(0.1f);
        painter.setRenderHint(QPainter::Antialiasing, true);
        painter.setPen(QPen(separator, 1.0));
        painter.drawRect(loupe.adjusted(-1, -1, 1, 1));
    }
    {
        using namespace LoupeGeometry;
        QPainter painter(&over);
        painter.setRenderHint(QPainter::Antialiasing, true);
        painter.setPen(QPen(QColor(0, 0, 0, qRound(0.15 * 255)), 0.5));
        for (int row = -gridReach; row <= gridReach; ++row) {
            for (int column = 0; column < gridSize; ++column)
                painter.drawRect(gridCellRect(loupe, column, row));
        }
        const QRectF centre = gridCellRect(loupe, gridReach, 0);
        painter.setPen(QPen(Qt::white, 3.0));
        painter.drawRect(centre.adjusted(1, 1, -1, -1));
        painter.setPen(QPen(Qt::black, 1.0));
        painter.drawRect(centre.adjusted(2, 2, -2, -2));
    }
}

} // namespace

LoupeOverlay::LoupeOverlay(const ScreenCapture &capture)
    : QWidget(nullptr,
              Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::X11BypassWindowManagerHint
                  | Qt::NoDropShadowWindowHint)
    , m_capture(capture)
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
    renderLayers(m_underGrid, m_overGrid, capture.devicePixelRatio, QGuiApplication::palette());
}

QRectF LoupeOverlay::loupeRect(QPointF position) const
{
    return LoupeGeometry::loupeRect(position, QRectF(m_capture.geometry))
        .translated(-QPointF(m_capture.geometry.topLeft()));
}

QPointF LoupeOverlay::crosshairCentre(QPointF position) const
{
    // Centred on the pixel that a pick would read, so the open square frames
    // exactly that pixel at any device pixel ratio.
    const double ratio = m_capture.devicePixelRatio;
    const auto pixel = LoupeGeometry::pixelIndex(position, QRectF(m_capture.geometry), ratio);
    return {(double(pixel.x) + 0.5) / ratio, (double(pixel.y) + 0.5) / ratio};
}

QRegion LoupeOverlay::loupeRegion(QPointF position) const
{
    if (!m_capture.contains(position))
        return {};
    const double reach = layerMargin;
    QRegion region(loupeRect(position).adjusted(-reach, -reach, reach, reach).toAlignedRect());
    const QPointF centre = crosshairCentre(position);
    const double cross = crosshairReach + 2.0;
    region += QRectF(centre.x() - cross, centre.y() - cross, 2 * cross, 2 * cross).toAlignedRect();
    return region;
}

void LoupeOverlay::setCursorPosition(QPointF position)
{
    if (position == m_cursorPosition)
        return;
    const QRegion dirty = loupeRegion(m_cursorPosition) + loupeRegion(position);
    m_cursorPosition = position;
    if (!dirty.isEmpty())
        update(dirty);
}

bool LoupeOverlay::eventFilter(QObject *watched, QEvent *event)
{
    // Mouse events are taken at the window, before the widget layer rounds
    // their positions to whole points: at a device pixel ratio of 2 the
    // pointer can rest on an odd device pixel, which a whole point misses.
    if (watched != windowHandle())
        return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseMove:
        emit moved(static_cast<QMouseEvent *>(event)->globalPosition());
        return true;
    case QEvent::MouseButtonPress:
        if (const auto *press = static_cast<QMouseEvent *>(event); press->button() == Qt::LeftButton) {
            emit moved(press->globalPosition());
            emit picked();
            return true;
        }
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void LoupeOverlay::takeKeyboard(int attemptsLeft)
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

void LoupeOverlay::releaseKeyboardGrab()
{
    if (QWindow *window = windowHandle())
        window->setKeyboardGrabEnabled(false);
}

void LoupeOverlay::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const double ratio = m_capture.devicePixelRatio;
    for (const QRect &rect : event->region()) {
        const QRectF source(rect.x() * ratio, rect.y() * ratio, rect.width() * ratio, rect.height() * ratio);
        painter.drawImage(QRectF(rect), m_capture.image, source);
    }
    if (!m_capture.contains(m_cursorPosition))
        return;
    drawLoupe(painter);
    drawCrosshair(painter);
}

void LoupeOverlay::drawLoupe(QPainter &painter) const
{
    using namespace LoupeGeometry;
    const QRectF loupe = loupeRect(m_cursorPosition);
    const QPointF layerOrigin = loupe.topLeft() - QPointF(layerMargin, layerMargin);
    painter.drawImage(layerOrigin, m_underGrid);

    // The 11 x 11 pixels around the centre, black off the image, drawn
    // magnified in one go: unsmoothed, each pixel becomes one square cell.
    const auto centre = pixelIndex(m_cursorPosition, QRectF(m_capture.geometry), m_capture.devicePixelRatio);
    const QImage &image = m_capture.image;
    for (int row = -gridReach; row <= gridReach; ++row) {
        auto *line = reinterpret_cast<QRgb *>(m_cells.scanLine(row + gridReach));
        for (int column = 0; column < gridSize; ++column) {
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

    painter.drawImage(layerOrigin, m_overGrid);
}

void LoupeOverlay::drawCrosshair(QPainter &painter) const
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

void LoupeOverlay::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        emit picked();
        return;
    case Qt::Key_Escape:
        emit cancelled();
        return;
    case Qt::Key_Left:
        emit nudged({-1, 0});
        return;
    case Qt::Key_Right:
        emit nudged({1, 0});
        return;
    case Qt::Key_Up:
        emit nudged({0, -1});
        return;
    case Qt::Key_Down:
        emit nudged({0, 1});
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void LoupeOverlay::enterEvent(QEnterEvent *event)
{
    // The overlay appearing under a still pointer: the first exact position,
    // finer than the whole point the run started from.
    emit moved(event->globalPosition());
}
