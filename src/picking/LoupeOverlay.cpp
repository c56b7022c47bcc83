#include "LoupeOverlay.h"

#include "picking/LoupeGeometry.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QEnterEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPalette>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <map>
#include <tuple>

namespace {

constexpr double crosshairReach = 8.0;
constexpr double crosshairGap = 3.0;

// How far the loupe's fixed layers reach beyond its square, in points.
constexpr double layerMargin = 16.0;

// The loupe's drop shadow, black at about 30 % under the loupe, 2 points
// down, fading out over 8 points: rings stacked from the outside in.
void drawShadow(QPainter &painter, const QRectF &casting)
{
    constexpr int rings = 8;
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 77 * 2 / rings));
    for (int i = rings; i >= 1; --i)
        painter.drawRoundedRect(casting.translated(0, 2).adjusted(-i, -i, i, i), i, i);
}

QImage transparentLayer(double ratio)
{
    const int side = qCeil((LoupeGeometry::loupeSize + 2 * layerMargin) * ratio);
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(ratio);
    return image;
}

// What never changes at one zoom, rendered once: under the grid the
// shadow, the background and the border; over it the cell outlines. A
// redraw then costs two image copies around the cell colors, the frame of
// the area a pick takes and the readout.
void renderLayers(QImage &under, QImage &over, double ratio, const QPalette &palette, int gridSize)
{
    under = transparentLayer(ratio);
    over = transparentLayer(ratio);
    const QRectF loupe(layerMargin, layerMargin, LoupeGeometry::loupeSize, LoupeGeometry::loupeSize);
    {
        QPainter painter(&under);
        const QRectF background = loupe.adjusted(-2, -2, 2, 2);
        painter.setRenderHint(QPainter::Antialiasing, true);
        drawShadow(painter, background);
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
        for (int row = -gridSize / 2; row <= gridSize / 2; ++row) {
            for (int column = 0; column < gridSize; ++column)
                painter.drawRect(gridCellRect(loupe, column, row, gridSize));
        }
    }
}

// The layers of a ratio and palette, rendered the first time they are
// needed and kept: every later run draws the same ones.
void cachedLayers(QImage &under, QImage &over, double ratio, const QPalette &palette, int gridSize)
{
    using Key = std::tuple<double, QRgb, QRgb, int>;
    static std::map<Key, std::pair<QImage, QImage>> cache;
    const Key key{ratio, palette.color(QPalette::Window).rgba(), palette.color(QPalette::WindowText).rgba(),
                  gridSize};
    auto found = cache.find(key);
    if (found == cache.end()) {
        std::pair<QImage, QImage> layers;
        renderLayers(layers.first, layers.second, ratio, palette, gridSize);
        found = cache.emplace(key, std::move(layers)).first;
    }
    under = found->second.first;
    over = found->second.second;
}

// What screen readers see of an overlay: a window named for the picker,
// whose description is the readout. (Qt gives a bare QWindow none.)
class LoupeAccessible : public QAccessibleObject
{
public:
    explicit LoupeAccessible(LoupeOverlay *overlay)
        : QAccessibleObject(overlay)
    {
    }
    QWindow *window() const override { return overlay(); }
    QAccessibleInterface *parent() const override { return QAccessible::queryAccessibleInterface(qApp); }
    int childCount() const override { return 0; }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Window; }
    QRect rect() const override { return overlay()->geometry(); }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.active = state.focused = overlay()->isActive();
        state.focusable = true;
        state.invisible = !overlay()->isVisible();
        return state;
    }
    QString text(QAccessible::Text text) const override
    {
        switch (text) {
        case QAccessible::Name:
            return overlay()->title();
        case QAccessible::Description:
        case QAccessible::Value:
            return overlay()->readout();
        default:
            return {};
        }
    }

private:
    LoupeOverlay *overlay() const { return static_cast<LoupeOverlay *>(object()); }
};

QAccessibleInterface *loupeAccessible(const QString &className, QObject *object)
{
    return className == QLatin1String("LoupeOverlay")
        ? new LoupeAccessible(static_cast<LoupeOverlay *>(object))
        : nullptr;
}

} // namespace

LoupeOverlay::LoupeOverlay(std::unique_ptr<FrozenScreen> frozen)
    : m_frozen(std::move(frozen))
    , m_backingStore(this)
    , m_gridSize(LoupeGeometry::defaultGridSize)
{
    static const bool accessible = (QAccessible::installFactory(loupeAccessible), true);
    Q_UNUSED(accessible);
    setSurfaceType(QSurface::RasterSurface);
    // On X11 past the window manager, placed exactly; a Wayland compositor
    // places only an ordinary window, which then asks to be full screen.
    const bool wayland = QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint
             | (wayland ? Qt::WindowFlags() : Qt::WindowStaysOnTopHint | Qt::X11BypassWindowManagerHint));
    setTitle(QStringLiteral("Precision color picker"));
    setScreen(m_frozen->screen());
    setGeometry(m_frozen->coveringGeometry());
    setLoupe(m_gridSize, m_areaSize, {});
}

void LoupeOverlay::setLoupe(int gridSize, int areaSize, const QString &readout)
{
    const bool sameLook = gridSize == m_gridSize && areaSize == m_areaSize && !m_cells.isNull();
    if (sameLook && readout == m_readout)
        return;
    if (gridSize != m_gridSize || m_cells.isNull()) {
        m_gridSize = gridSize;
        m_cells = QImage(gridSize, gridSize, QImage::Format_RGB32);
        cachedLayers(m_underGrid, m_overGrid, m_frozen->devicePixelRatio(), QGuiApplication::palette(),
                     gridSize);
    }
    m_areaSize = areaSize;
    if (readout != m_readout) {
        m_readout = readout;
        QAccessibleEvent event(this, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&event);
    }
    if (!m_painted)
        return;
    m_pending += loupeRegion(m_cursorPosition);
    if (!m_updatePosted) {
        m_updatePosted = true;
        QCoreApplication::postEvent(this, new QEvent(QEvent::UpdateRequest), Qt::LowEventPriority);
    }
}

QRectF LoupeOverlay::loupeRect(QPointF position) const
{
    using LoupeGeometry::readoutHeight;
    const QRectF frame = QRectF(m_frozen->geometry()).adjusted(0, readoutHeight, 0, -readoutHeight);
    return LoupeGeometry::loupeRect(position, frame).translated(-QPointF(m_frozen->geometry().topLeft()));
}

QPointF LoupeOverlay::crosshairCentre(QPointF position) const
{
    // Centred on the pixel that a pick would read, so the open square frames
    // exactly that pixel at any device pixel ratio.
    const double ratio = m_frozen->devicePixelRatio();
    const auto pixel = LoupeGeometry::pixelIndex(position, QRectF(m_frozen->geometry()), ratio);
    return {(double(pixel.x) + 0.5) / ratio, (double(pixel.y) + 0.5) / ratio};
}

QRegion LoupeOverlay::loupeRegion(QPointF position) const
{
    if (!m_frozen->contains(position))
        return {};
    const double reach = layerMargin;
    const QRectF loupe = loupeRect(position);
    QRegion region(loupe.adjusted(-reach, -reach, reach, reach).toAlignedRect());
    const QPointF local = position - QPointF(m_frozen->geometry().topLeft());
    region += LoupeGeometry::readoutRect(loupe, local).adjusted(-reach, -reach, reach, reach).toAlignedRect();
    const QPointF centre = crosshairCentre(position);
    const double cross = crosshairReach + 2.0;
    region += QRectF(centre.x() - cross, centre.y() - cross, 2 * cross, 2 * cross).toAlignedRect();
    return region;
}

QRegion LoupeOverlay::devicePixels(const QRegion &region) const
{
    const double ratio = m_frozen->devicePixelRatio();
    QRegion pixels;
    for (const QRect &rect : region) {
        const QRectF scaled(rect.x() * ratio, rect.y() * ratio, rect.width() * ratio, rect.height() * ratio);
        pixels += scaled.toAlignedRect().adjusted(-1, -1, 1, 1);
    }
    return pixels & m_frozen->pixelRect();
}

QRect LoupeOverlay::gridPixels(QPointF position) const
{
    using namespace LoupeGeometry;
    const auto centre = pixelIndex(position, QRectF(m_frozen->geometry()), m_frozen->devicePixelRatio());
    const int reach = m_gridSize / 2;
    return QRect(int(centre.x - reach), int(centre.y - reach), m_gridSize, m_gridSize);
}

void LoupeOverlay::setCursorPosition(QPointF position)
{
    if (position == m_cursorPosition)
        return;
    const QRegion dirty = loupeRegion(m_cursorPosition) + loupeRegion(position);
    m_cursorPosition = position;
    if (dirty.isEmpty() || !m_painted)
        return;
    m_pending += dirty;
    // Posted rather than requested: requestUpdate() waits for a timer,
    // while moves that arrive together still share one paint.
    if (!m_updatePosted) {
        m_updatePosted = true;
        QCoreApplication::postEvent(this, new QEvent(QEvent::UpdateRequest), Qt::LowEventPriority);
    }
}

bool LoupeOverlay::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::UpdateRequest:
        m_updatePosted = false;
        paint(std::exchange(m_pending, {}));
        return true;
    case QEvent::Enter:
        // The overlay appearing under a still pointer: the first exact
        // position, finer than where the run started.
        emit moved(static_cast<QEnterEvent *>(event)->globalPosition());
        return true;
    case QEvent::Hide:
        m_painted = false;
        m_paintedOver = QRegion();
        break;
    default:
        break;
    }
    return QWindow::event(event);
}

void LoupeOverlay::paintEvent(QPaintEvent *event)
{
    QRegion region = event->region();
    // Where the screen keeps its own picture it shows through the unpainted
    // window, the first frame included: only what this window painted
    // over, and the loupe, need painting.
    if (m_frozen->keptByScreen())
        region = (region & m_paintedOver) + loupeRegion(m_cursorPosition);
    const bool first = !m_painted;
    paint(region);
    m_painted = true;
    if (first)
        emit firstFrameShown();
}

void LoupeOverlay::paint(const QRegion &region)
{
    if (region.isEmpty() || !isExposed())
        return;
    if (m_backingStore.size() != size())
        m_backingStore.resize(size());
    const bool loupeShown = m_frozen->contains(m_cursorPosition);
    // Read before anything is painted over them: on a screen that keeps
    // its own picture, the pixels under the loupe are still the frozen ones.
    m_frozen->require(devicePixels(region) + (loupeShown ? gridPixels(m_cursorPosition) : QRect()));

    m_backingStore.beginPaint(region);
    QPaintDevice *device = m_backingStore.paintDevice();
    paintFrozen(device, region);
    if (loupeShown) {
        QPainter painter(device);
        painter.setClipRegion(region);
        drawLoupe(painter);
        drawCrosshair(painter);
    }
    m_backingStore.endPaint();
    m_backingStore.flush(region);
    m_paintedOver += region;
}

void LoupeOverlay::paintFrozen(QPaintDevice *device, const QRegion &region)
{
    const QImage &frozen = m_frozen->image();
    const QRegion pixels = devicePixels(region);
    if (device->devType() == QInternal::Image) {
        // Pixel for pixel, whatever the ratio: a view of the backing store
        // in device pixels.
        auto *surface = static_cast<QImage *>(device);
        QImage view(surface->bits(), surface->width(), surface->height(), surface->bytesPerLine(),
                    surface->format());
        QPainter painter(&view);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        for (const QRect &rect : pixels)
            painter.drawImage(rect.topLeft(), frozen, rect);
        return;
    }
    QPainter painter(device);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    const double ratio = m_frozen->devicePixelRatio();
    for (const QRect &rect : pixels) {
        const QRectF target(rect.x() / ratio, rect.y() / ratio, rect.width() / ratio, rect.height() / ratio);
        painter.drawImage(target, frozen, rect);
    }
}

void LoupeOverlay::takeKeyboard(int attemptsLeft)
{
    requestActivate();
    raise();
    if (isExposed() && setKeyboardGrabEnabled(true))
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
    setKeyboardGrabEnabled(false);
}

void LoupeOverlay::drawLoupe(QPainter &painter)
{
    using namespace LoupeGeometry;
    const QRectF loupe = loupeRect(m_cursorPosition);
    const QPointF layerOrigin = loupe.topLeft() - QPointF(layerMargin, layerMargin);
    painter.drawImage(layerOrigin, m_underGrid);

    // The pixels around the centre, black off the screen, drawn magnified
    // in one go: unsmoothed, each pixel becomes one square cell.
    const QRect grid = gridPixels(m_cursorPosition);
    const QRect screen = m_frozen->pixelRect();
    const QImage &image = m_frozen->image();
    for (int row = 0; row < m_gridSize; ++row) {
        auto *line = reinterpret_cast<QRgb *>(m_cells.scanLine(row));
        for (int column = 0; column < m_gridSize; ++column) {
            const QPoint pixel(grid.x() + column, grid.y() + row);
            line[column] =
                screen.contains(pixel) ? qPremultiply(image.pixel(pixel)) | 0xff000000u : qRgb(0, 0, 0);
        }
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.drawImage(loupe, m_cells);

    painter.drawImage(layerOrigin, m_overGrid);

    // The area a pick takes, framed white over black.
    const int reach = m_areaSize / 2, middle = m_gridSize / 2;
    const QRectF area = gridCellRect(loupe, middle - reach, -reach, m_gridSize)
                            .united(gridCellRect(loupe, middle + reach, reach, m_gridSize));
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, 3.0));
    painter.drawRect(area.adjusted(1, 1, -1, -1));
    painter.setPen(QPen(Qt::black, 1.0));
    painter.drawRect(area.adjusted(2, 2, -2, -2));

    // The readout: what a click would pick, and over how many pixels.
    const QRectF strip = readoutRect(loupe, m_cursorPosition - QPointF(m_frozen->geometry().topLeft()));
    const QPalette palette = QGuiApplication::palette();
    painter.fillRect(strip.adjusted(-2, -2, 2, 2), palette.color(QPalette::Window));
    painter.setPen(palette.color(QPalette::WindowText));
    // Resolved once: a move repaints the readout.
    static const QFont font = [] {
        QFont monospace = QGuiApplication::font();
        monospace.setFamily(QStringLiteral("monospace"));
        monospace.setStyleHint(QFont::Monospace);
        monospace.setPixelSize(13);
        return monospace;
    }();
    painter.setFont(font);
    const QString areaText = m_areaSize > 1 ? QStringLiteral("  %1\u00D7%1").arg(m_areaSize) : QString();
    painter.drawText(strip, Qt::AlignCenter, m_readout + areaText);
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

void LoupeOverlay::mouseMoveEvent(QMouseEvent *event)
{
    emit moved(event->globalPosition());
}

void LoupeOverlay::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QWindow::mousePressEvent(event);
        return;
    }
    emit moved(event->globalPosition());
    emit picked(event->modifiers() & Qt::ShiftModifier);
}

void LoupeOverlay::wheelEvent(QWheelEvent *event)
{
    // A notch of a wheel is 120 eighths of a degree; a touchpad sends less.
    m_wheelAngle += event->angleDelta().y();
    const int steps = int(m_wheelAngle / 120);
    m_wheelAngle -= steps * 120;
    if (steps)
        emit zoomed(steps);
}

void LoupeOverlay::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        emit picked(event->modifiers() & Qt::ShiftModifier);
        return;
    case Qt::Key_1:
    case Qt::Key_3:
    case Qt::Key_5:
    case Qt::Key_9:
        emit areaChosen(event->key() - Qt::Key_0);
        return;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        emit zoomed(1);
        return;
    case Qt::Key_Minus:
        emit zoomed(-1);
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
        QWindow::keyPressEvent(event);
    }
}
