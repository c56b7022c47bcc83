#include "ScreenPattern.h"

#include "picking/X11Display.h"

#include <QGuiApplication>
#include <QPainter>
#include <QProcess>
#include <QScreen>
#include <QTest>

#include <algorithm>
#include <cmath>

class PatternWindow : public QWidget
{
public:
    explicit PatternWindow(QScreen *screen)
        : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint)
    {
        const QRect pixels = rootPixels(screen);
        pattern = QImage(pixels.size(), QImage::Format_RGB32);
        for (int y = 0; y < pixels.height(); ++y) {
            for (int x = 0; x < pixels.width(); ++x)
                pattern.setPixel(x, y, patternPixel(pixels.x() + x, pixels.y() + y));
        }
        pattern.setDevicePixelRatio(screen->devicePixelRatio());
        setAttribute(Qt::WA_OpaquePaintEvent);
        setScreen(screen);
        // Every device pixel, where the size in points rounds one short.
        const double ratio = screen->devicePixelRatio();
        setGeometry(
            QRect(pixels.topLeft(),
                  QSize(int(std::ceil(pixels.width() / ratio)), int(std::ceil(pixels.height() / ratio)))));
    }
    QImage pattern;
    int exposes = 0; // each puts the window's pixels back on the screen

protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).drawImage(QPointF(0, 0), pattern); }
    void showEvent(QShowEvent *) override { windowHandle()->installEventFilter(this); }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        exposes += event->type() == QEvent::Expose;
        return QWidget::eventFilter(watched, event);
    }
};

QRgb patternPixel(int x, int y)
{
    return qRgb(x & 0xff, y & 0xff, 0x80 | ((x >> 8) & 0xf) | (((y >> 8) & 0x7) << 4));
}

SampledColor patternColor(QPoint rootPixel)
{
    const QRgb pixel = patternPixel(rootPixel.x(), rootPixel.y());
    return {qRed(pixel) / 255.0, qGreen(pixel) / 255.0, qBlue(pixel) / 255.0, 1.0};
}

QRect rootPixels(const QScreen *screen)
{
    const QRect g = screen->geometry();
    const double ratio = screen->devicePixelRatio();
    // One screen is the whole root window: its size in points may round
    // one pixel short of it (1280 pixels at 1.75 are 731 points).
    if (QGuiApplication::screens().size() == 1)
        return {g.topLeft(), *X11Display::rootSize()};
    // As the monitors were set up: a screen reaches to its neighbour.
    for (const QString &rect :
         qEnvironmentVariable("TINTWRIGHT_SCREEN_PIXELS").split(u' ', Qt::SkipEmptyParts)) {
        const QStringList n = rect.split(u',');
        if (n.size() == 4 && QPoint(n[0].toInt(), n[1].toInt()) == g.topLeft())
            return {g.topLeft(), QSize(n[2].toInt(), n[3].toInt())};
    }
    return {g.topLeft(), QSize(qRound(g.width() * ratio), qRound(g.height() * ratio))};
}

QImage rootShot(const QRect &rootPixels)
{
    return X11Display::readPixels(rootPixels);
}

ScreenPattern::ScreenPattern()
{
    for (QScreen *screen : QGuiApplication::screens())
        m_windows.push_back(std::make_unique<PatternWindow>(screen));
}

ScreenPattern::~ScreenPattern() = default;

bool ScreenPattern::showAndSettle()
{
    for (const auto &window : m_windows) {
        window->show();
        if (!QTest::qWaitForWindowExposed(window.get()))
            return false;
    }
    // Sparse rows and columns of each screen show the pattern.
    return QTest::qWaitFor(
        [&] {
            return std::all_of(m_windows.begin(), m_windows.end(), [](const auto &window) {
                const QImage shot = window->screen()->grabWindow(0).toImage();
                const QImage &pattern = window->pattern;
                for (int y = 0; y < shot.height(); y += 7) {
                    for (int x = 0; x < shot.width(); x += 7) {
                        if (shot.size() != pattern.size()
                            || (shot.pixel(x, y) ^ pattern.pixel(x, y)) & 0xffffff)
                            return false;
                    }
                }
                return true;
            });
        },
        10000);
}

void ScreenPattern::markCovered()
{
    for (const auto &window : m_windows)
        window->exposes = 0;
}

bool ScreenPattern::waitUntilRepainted()
{
    return QTest::qWaitFor(
        [&] {
            return std::all_of(m_windows.begin(), m_windows.end(),
                               [](const auto &window) { return window->exposes > 0; });
        },
        5000);
}

bool xdotool(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    return process.waitForFinished(5000) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0;
}

bool movePointer(QPoint rootPixel)
{
    return xdotool(
        {QStringLiteral("mousemove"), QString::number(rootPixel.x()), QString::number(rootPixel.y())});
}

QPoint pointerPixel()
{
    return X11Display::pointerPosition().value_or(QPoint(-1, -1));
}
