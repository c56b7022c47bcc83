#include "FrozenScreen.h"

#include "picking/X11Display.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

// A screen's origin is the same in points and device pixels; its size in
// points is its size in pixels over the ratio, rounded, which at a ratio
// like 1.75 loses the last column (1280 pixels are 731 points, and 731
// points 1279 pixels). The screen really reaches to the next screen's
// origin or the root window's edge, whichever comes first.
QSize pixelSizeOf(const QScreen *screen)
{
    const QRect g = screen->geometry();
    const double ratio = screen->devicePixelRatio();
    QSize size(qRound(g.width() * ratio), qRound(g.height() * ratio));
    const std::optional<QSize> root = X11Display::rootSize();
    if (!root)
        return size;
    int right = root->width(), bottom = root->height();
    for (const QScreen *other : QGuiApplication::screens()) {
        const QRect o = other->geometry();
        if (o.x() > g.x() && o.y() < g.y() + size.height() && g.y() < o.y() + o.height())
            right = std::min(right, o.x());
        if (o.y() > g.y() && o.x() < g.x() + size.width() && g.x() < o.x() + o.width())
            bottom = std::min(bottom, o.y());
    }
    // Only a rounding's worth: anything else is not this screen's edge.
    if (std::abs(right - g.x() - size.width()) <= std::ceil(ratio))
        size.setWidth(right - g.x());
    if (std::abs(bottom - g.y() - size.height()) <= std::ceil(ratio))
        size.setHeight(bottom - g.y());
    return size;
}

} // namespace

FrozenScreen::FrozenScreen(QScreen *screen, bool keptByScreen)
    : m_screen(screen)
    , m_geometry(screen->geometry())
    , m_ratio(screen->devicePixelRatio())
    , m_pixelSize(pixelSizeOf(screen))
    , m_keptByScreen(keptByScreen)
{
}

QRect FrozenScreen::coveringGeometry() const
{
    return QRect(
        m_geometry.topLeft(),
        QSize(int(std::ceil(m_pixelSize.width() / m_ratio)), int(std::ceil(m_pixelSize.height() / m_ratio))));
}

bool FrozenScreen::canFreeze(QString *whyNot)
{
    auto fail = [whyNot](const QString &reason) {
        if (whyNot)
            *whyNot = reason;
        return false;
    };
    // Wayland hides other clients' pixels; only a portal can read them.
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return fail(QStringLiteral("a Wayland session does not let programs read the screen"));
    if (QGuiApplication::screens().isEmpty())
        return fail(QStringLiteral("there is no screen"));
    return true;
}

std::vector<std::unique_ptr<FrozenScreen>> FrozenScreen::fromLayoutImage(const QImage &image, QString *whyNot)
{
    std::vector<std::unique_ptr<FrozenScreen>> frozen;
    QRect layout;
    for (const QScreen *screen : QGuiApplication::screens())
        layout |= screen->geometry();
    if (image.isNull() || layout.isEmpty()) {
        if (whyNot)
            *whyNot = QStringLiteral("the screenshot could not be read");
        return frozen;
    }
    const QImage picture = image.convertToFormat(QImage::Format_RGB32);
    const double scaleX = double(picture.width()) / layout.width();
    const double scaleY = double(picture.height()) / layout.height();
    for (QScreen *screen : QGuiApplication::screens()) {
        std::unique_ptr<FrozenScreen> one(new FrozenScreen(screen, false));
        const QRect g = screen->geometry().translated(-layout.topLeft());
        const QRect place(
            QPoint(qRound(g.x() * scaleX), qRound(g.y() * scaleY)),
            QPoint(qRound((g.x() + g.width()) * scaleX) - 1, qRound((g.y() + g.height()) * scaleY) - 1));
        // The picture's pixels are the screen's device pixels where its
        // scale is the screen's own; otherwise each is stretched to fit.
        QImage part = picture.copy(place);
        const QSize pixels(qRound(g.width() * one->m_ratio), qRound(g.height() * one->m_ratio));
        if (part.size() != pixels)
            part = part.scaled(pixels, Qt::IgnoreAspectRatio, Qt::FastTransformation);
        one->m_pixelSize = part.size();
        one->m_image = part;
        one->m_known = QRegion(one->pixelRect());
        frozen.push_back(std::move(one));
    }
    return frozen;
}

std::vector<std::unique_ptr<FrozenScreen>> FrozenScreen::freezeAll(QString *whyNot)
{
    std::vector<std::unique_ptr<FrozenScreen>> frozen;
    if (!canFreeze(whyNot))
        return frozen;
    // Reading as the overlay paints needs an X server that leaves an
    // unpainted window showing the screen beneath, and a pixel format read
    // as it is.
    const bool readOnDemand = X11Display::isAvailable() && !X11Display::isComposited()
        && !X11Display::readPixels(QRect(0, 0, 1, 1)).isNull();
    for (QScreen *screen : QGuiApplication::screens()) {
        std::unique_ptr<FrozenScreen> one(new FrozenScreen(screen, readOnDemand));
        if (!readOnDemand) {
            // Qt's own grab, where the X server's pixels cannot be taken
            // as they come.
            QImage image = X11Display::readPixels(QRect(one->m_geometry.topLeft(), one->m_pixelSize));
            if (image.isNull())
                image = screen->grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32);
            if (image.isNull()) {
                if (whyNot)
                    *whyNot = QStringLiteral("the screen could not be captured");
                return {};
            }
            one->m_pixelSize = image.size();
            one->m_image = std::move(image);
            one->m_known = one->pixelRect();
        }
        frozen.push_back(std::move(one));
    }
    return frozen;
}

bool FrozenScreen::contains(QPointF point) const
{
    // As far as its pixels reach: its size in points is rounded, and may
    // fall short of the middle of its last pixel.
    return point.x() >= m_geometry.x() && point.x() < m_geometry.x() + m_pixelSize.width() / m_ratio
        && point.y() >= m_geometry.y() && point.y() < m_geometry.y() + m_pixelSize.height() / m_ratio;
}

void FrozenScreen::require(const QRegion &pixels)
{
    const QRegion missing = (pixels & pixelRect()) - m_known;
    if (missing.isEmpty())
        return;
    // Untouched pages of a fresh image cost nothing: only the rows read
    // are ever brought in.
    if (m_image.isNull())
        m_image = QImage(m_pixelSize, QImage::Format_RGB32);
    // One read of the missing pixels' bounds; what the overlay painted in
    // there is known already and not copied.
    const QRect bounds = missing.boundingRect();
    const QImage read = X11Display::readPixels(bounds.translated(m_geometry.topLeft()));
    for (const QRect &rect : missing) {
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(m_image.scanLine(y)) + rect.x();
            if (read.isNull())
                std::memset(line, 0, sizeof(QRgb) * size_t(rect.width()));
            else
                std::memcpy(line,
                            reinterpret_cast<const QRgb *>(read.constScanLine(y - bounds.y())) + rect.x()
                                - bounds.x(),
                            sizeof(QRgb) * size_t(rect.width()));
        }
    }
    m_known += missing;
}

QPointF FrozenScreen::pointFromRootPixel(QPointF rootPixel) const
{
    const QPointF origin(m_geometry.topLeft());
    return origin + (rootPixel - origin) / m_ratio;
}
