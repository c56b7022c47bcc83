#include "ScreenPattern.h"

#include <QGuiApplication>
#include <QPainter>
#include <QProcess>
#include <QScreen>
#include <QTest>

QRgb patternPixel(int x, int y)
{
    const int blue = 0x80 | ((x >> 8) & 0x7) | (((y >> 8) & 0x7) << 3);
    return qRgb(x & 0xff, y & 0xff, blue);
}

SampledColor patternColor(int x, int y)
{
    const QRgb pixel = patternPixel(x, y);
    return {qRed(pixel) / 255.0, qGreen(pixel) / 255.0, qBlue(pixel) / 255.0, 1.0};
}

ScreenPatternWindow::ScreenPatternWindow()
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint)
{
    QScreen *screen = QGuiApplication::primaryScreen();
    const double ratio = screen->devicePixelRatio();
    const QSize pixels = (QSizeF(screen->geometry().size()) * ratio).toSize();
    m_pattern = QImage(pixels, QImage::Format_RGB32);
    for (int y = 0; y < pixels.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(m_pattern.scanLine(y));
        for (int x = 0; x < pixels.width(); ++x)
            line[x] = patternPixel(x, y);
    }
    m_pattern.setDevicePixelRatio(ratio);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setGeometry(screen->geometry());
}

bool ScreenPatternWindow::showAndSettle()
{
    show();
    if (!QTest::qWaitForWindowExposed(this))
        return false;
    return waitUntilOnScreen();
}

bool ScreenPatternWindow::waitUntilOnScreen()
{
    QScreen *screen = QGuiApplication::primaryScreen();
    return QTest::qWaitFor(
        [&] {
            const QImage shot = screen->grabWindow(0).toImage();
            if (shot.size() != m_pattern.size())
                return false;
            // Sparse rows and columns cover every place an overlay or loupe was.
            for (int y = 0; y < shot.height(); y += 7) {
                for (int x = 0; x < shot.width(); x += 7) {
                    if ((shot.pixel(x, y) & 0xffffff) != (patternPixel(x, y) & 0xffffff))
                        return false;
                }
            }
            return true;
        },
        10000);
}

void ScreenPatternWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.drawImage(QPointF(0, 0), m_pattern);
}

bool xdotool(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    return process.waitForFinished(5000) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0;
}
