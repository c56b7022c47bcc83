#include "ScreenPattern.h"

#include "picking/FrozenScreen.h"
#include "picking/LoupeColorSampler.h"
#include "picking/LoupeGeometry.h"
#include "picking/LoupeOverlay.h"

#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>

// Runs whole on one screen, and its pixel-exact functions (click, grid,
// arrows, real keys) again at device pixel ratios 1.25, 1.5, 1.75 and 2
// (QT_SCALE_FACTOR) and on two screens of different ratios side by side
// (QT_SCREEN_SCALE_FACTORS). Pointer positions are device pixels of the
// root window, as xdotool and the pattern speak.

namespace {

bool sameColor(const SampledColor &a, const SampledColor &b)
{
    return a.red == b.red && a.green == b.green && a.blue == b.blue && a.alpha == b.alpha;
}

QList<LoupeOverlay *> shownOverlays()
{
    QList<LoupeOverlay *> overlays;
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        if (auto *overlay = qobject_cast<LoupeOverlay *>(window); overlay && overlay->isVisible())
            overlays.append(overlay);
    }
    return overlays;
}

// Rows for every screen: the name of the screen and a few of its pixels.
void addPixelRows(const std::function<void(const QString &, const QRect &)> &add)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (int i = 0; i < screens.size(); ++i)
        add(screens.size() > 1 ? QStringLiteral("screen %1, ").arg(i) : QString(), rootPixels(screens[i]));
}

} // namespace

class TestLoupe : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void clickPicksDevicePixelUnderPointer_data();
    void clickPicksDevicePixelUnderPointer();
    void loupeShowsPixelsAroundPointer_data();
    void loupeShowsPixelsAroundPointer();
    void arrowsMoveOneDevicePixelAndClamp_data();
    void arrowsMoveOneDevicePixelAndClamp();
    void escapeCancelsOnceAndCleansUp();
    void enterPicksStoredPosition();
    void otherInputKeepsRunning();
    void realKeysReachOverlay();

private:
    void startRun(QPoint rootPixel);
    // The root pixel the sampler's stored position is on.
    std::optional<QPoint> storedPixel() const;
    bool pointerOn(QPoint rootPixel) const;
    LoupeOverlay *overlay() const { return m_sampler ? m_sampler->activeOverlay() : nullptr; }

    std::unique_ptr<ScreenPattern> m_pattern;
    std::unique_ptr<LoupeColorSampler> m_sampler;
    // Every outcome of the run (none: a cancel), and the run's state then.
    QList<std::optional<SampledColor>> m_results;
    bool m_runningAtOutcome = false;
    bool m_pointerHiddenAtOutcome = false;
};

void TestLoupe::initTestCase()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        QSKIP("needs an X display");
    if (qEnvironmentVariableIsSet("QT_SCALE_FACTOR")) {
        QCOMPARE(QGuiApplication::primaryScreen()->devicePixelRatio(),
                 qEnvironmentVariable("QT_SCALE_FACTOR").toDouble());
    }
    if (qEnvironmentVariableIsSet("QT_SCREEN_SCALE_FACTORS")) {
        QCOMPARE(QGuiApplication::screens().size(), 2);
        QVERIFY(QGuiApplication::screens()[0]->devicePixelRatio()
                != QGuiApplication::screens()[1]->devicePixelRatio());
    }
    m_pattern = std::make_unique<ScreenPattern>();
    QVERIFY(m_pattern->showAndSettle());
}

void TestLoupe::cleanup()
{
    m_sampler.reset();
    m_results.clear();
    // The next run must freeze the pattern, not what the overlay left.
    QVERIFY(m_pattern->waitUntilRepainted());
}

std::optional<QPoint> TestLoupe::storedPixel() const
{
    const QPointF position = m_sampler->currentPosition();
    for (QScreen *screen : QGuiApplication::screens()) {
        const QRect g = screen->geometry();
        const auto pixel = LoupeGeometry::pixelIndex(position, QRectF(g), screen->devicePixelRatio());
        const QPoint root = g.topLeft() + QPoint(int(pixel.x), int(pixel.y));
        if (position.x() >= g.x() && position.y() >= g.y() && rootPixels(screen).contains(root))
            return root;
    }
    return std::nullopt;
}

bool TestLoupe::pointerOn(QPoint rootPixel) const
{
    return QTest::qWaitFor([&] { return storedPixel() == rootPixel; }, 2000);
}

void TestLoupe::startRun(QPoint rootPixel)
{
    QVERIFY(movePointer(rootPixel));
    m_pattern->markCovered();
    m_sampler = std::make_unique<LoupeColorSampler>();
    auto record = [this](std::optional<SampledColor> color) {
        m_results.append(color);
        m_runningAtOutcome = m_sampler->isRunning();
        m_pointerHiddenAtOutcome = QGuiApplication::overrideCursor() != nullptr;
    };
    connect(m_sampler.get(), &ColorSampler::colorSampled, this, record);
    connect(m_sampler.get(), &ColorSampler::cancelled, this, [record] { record(std::nullopt); });
    connect(m_sampler.get(), &ColorSampler::failed, this,
            [](const QString &reason) { QFAIL(qPrintable(reason)); });
    m_sampler->start();
    QVERIFY(m_sampler->isRunning());
    QVERIFY(QTest::qWaitForWindowExposed(overlay()));
    QVERIFY(pointerOn(rootPixel));
}

void TestLoupe::clickPicksDevicePixelUnderPointer_data()
{
    QTest::addColumn<QPoint>("rootPixel");
    addPixelRows([](const QString &screen, const QRect &pixels) {
        QTest::newRow(qPrintable(screen + "first")) << pixels.topLeft();
        QTest::newRow(qPrintable(screen + "top-right corner")) << pixels.topRight();
        QTest::newRow(qPrintable(screen + "bottom-left corner")) << pixels.bottomLeft();
        QTest::newRow(qPrintable(screen + "last")) << pixels.bottomRight();
        // Odd, and a hair short of itself in points at 1.25 to 1.75.
        QTest::newRow(qPrintable(screen + "uneven")) << pixels.topLeft() + QPoint(601, 453);
    });
}

void TestLoupe::clickPicksDevicePixelUnderPointer()
{
    QFETCH(QPoint, rootPixel);
    startRun(rootPixels(QGuiApplication::primaryScreen()).center());
    QVERIFY(movePointer(rootPixel));
    QVERIFY(pointerOn(rootPixel));
    QVERIFY(xdotool({"click", "1"}));
    QTRY_COMPARE(m_results.size(), 1);
    QVERIFY(m_results.first());
    QVERIFY(sameColor(*m_results.first(), patternColor(rootPixel)));
    QVERIFY(!m_runningAtOutcome);
    QVERIFY(!m_pointerHiddenAtOutcome);
}

void TestLoupe::loupeShowsPixelsAroundPointer_data()
{
    QTest::addColumn<int>("screen");
    QTest::addColumn<QPoint>("rootPixel");
    int index = 0;
    addPixelRows([&index](const QString &screen, const QRect &pixels) {
        QTest::newRow(qPrintable(screen + "top-left corner")) << index << pixels.topLeft();
        QTest::newRow(qPrintable(screen + "bottom-right corner")) << index << pixels.bottomRight();
        QTest::newRow(qPrintable(screen + "top edge, middle")) << index << QPoint(pixels.center().x(), 2);
        QTest::newRow(qPrintable(screen + "odd pixel in the middle"))
            << index << pixels.topLeft() + QPoint(601, 403);
        ++index;
    });
}

void TestLoupe::loupeShowsPixelsAroundPointer()
{
    QFETCH(int, screen);
    QFETCH(QPoint, rootPixel);
    startRun(rootPixels(QGuiApplication::primaryScreen()).center() + QPoint(-100, 60));
    QVERIFY(movePointer(rootPixel));
    QVERIFY(pointerOn(rootPixel));
    QScreen *on = QGuiApplication::screens()[screen];
    const QRect pixels = rootPixels(on);
    const double ratio = on->devicePixelRatio();
    const QRectF loupe = LoupeGeometry::loupeRect(m_sampler->currentPosition(), QRectF(on->geometry()));

    // What the screen shows, once the loupe has been drawn there.
    const QPoint away = pixels.topLeft() + (rootPixel - pixels.topLeft()) / 2;
    const QPointF origin(on->geometry().topLeft());
    const QRect area =
        (QRectF((loupe.topLeft() - origin) * ratio, loupe.size() * ratio).toAlignedRect()
         | QRect(rootPixel - pixels.topLeft(), QSize(1, 1)) | QRect(away - pixels.topLeft(), QSize(1, 1)))
            .translated(pixels.topLeft())
        & pixels;
    QString mismatch;
    const auto shows = [&] {
        const QImage shot = rootShot(area);
        const auto at = [&](QPoint root) { return shot.pixel(root - area.topLeft()) & 0xffffff; };
        for (int row = -5; row <= 5; ++row) {
            for (int column = 0; column < 11; ++column) {
                // A point clear of the outline and of the centre cell's frame.
                const QPointF centre = LoupeGeometry::gridCellRect(loupe, column, row).center();
                const QPoint probe = pixels.topLeft() + ((centre - origin) * ratio).toPoint();
                const QPoint shown = rootPixel + QPoint(column - 5, row);
                const QRgb expected =
                    pixels.contains(shown) ? patternPixel(shown.x(), shown.y()) & 0xffffff : 0;
                if (at(probe) != expected) {
                    mismatch = QStringLiteral("cell %1,%2: %3 instead of %4")
                                   .arg(column)
                                   .arg(row)
                                   .arg(at(probe), 6, 16)
                                   .arg(expected, 6, 16);
                    return false;
                }
            }
        }
        // The crosshair leaves the pixel under the pointer itself
        // uncovered, and the screen away from the loupe shows as it was.
        for (const QPoint root : {rootPixel, away}) {
            if (at(root) != (patternPixel(root.x(), root.y()) & 0xffffff)) {
                mismatch = QStringLiteral("pixel %1,%2 covered").arg(root.x()).arg(root.y());
                return false;
            }
        }
        return true;
    };
    QVERIFY2(QTest::qWaitFor(shows, 3000), qPrintable(mismatch));
}

void TestLoupe::arrowsMoveOneDevicePixelAndClamp_data()
{
    QTest::addColumn<QPoint>("start");
    QTest::addColumn<int>("key");
    QTest::addColumn<QPoint>("expected");

    addPixelRows([](const QString &screen, const QRect &pixels) {
        const QPoint middle = pixels.topLeft() + QPoint(301, 250);
        QTest::newRow(qPrintable(screen + "left")) << middle << int(Qt::Key_Left) << middle + QPoint(-1, 0);
        QTest::newRow(qPrintable(screen + "right")) << middle << int(Qt::Key_Right) << middle + QPoint(1, 0);
        QTest::newRow(qPrintable(screen + "up")) << middle << int(Qt::Key_Up) << middle + QPoint(0, -1);
        QTest::newRow(qPrintable(screen + "down")) << middle << int(Qt::Key_Down) << middle + QPoint(0, 1);
        const QPoint left(pixels.left(), middle.y());
        const QPoint right(pixels.right(), middle.y());
        const QPoint top(middle.x(), pixels.top());
        const QPoint bottom(middle.x(), pixels.bottom());
        QTest::newRow(qPrintable(screen + "left at min x stays")) << left << int(Qt::Key_Left) << left;
        QTest::newRow(qPrintable(screen + "right at max x stays")) << right << int(Qt::Key_Right) << right;
        QTest::newRow(qPrintable(screen + "up at min y stays")) << top << int(Qt::Key_Up) << top;
        QTest::newRow(qPrintable(screen + "down at max y stays")) << bottom << int(Qt::Key_Down) << bottom;
    });
}

void TestLoupe::arrowsMoveOneDevicePixelAndClamp()
{
    QFETCH(QPoint, start);
    QFETCH(int, key);
    QFETCH(QPoint, expected);
    startRun(start);
    QTest::keyClick(overlay(), Qt::Key(key));
    QCOMPARE(storedPixel(), std::optional<QPoint>(expected));
    QTRY_COMPARE(pointerPixel(), expected);
    for (LoupeOverlay *shown : shownOverlays())
        QCOMPARE(shown->cursorPosition(), m_sampler->currentPosition());
    QVERIFY(m_sampler->isRunning());
    // Return then picks exactly where the arrows left the pointer.
    QTest::keyClick(overlay(), Qt::Key_Return);
    QCOMPARE(m_results.size(), 1);
    QVERIFY(m_results.first());
    QVERIFY(sameColor(*m_results.first(), patternColor(expected)));
}

void TestLoupe::escapeCancelsOnceAndCleansUp()
{
    startRun(QPoint(300, 300));
    QVERIFY(QGuiApplication::overrideCursor());
    QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::BlankCursor);
    const QList<LoupeOverlay *> overlays = shownOverlays();
    QCOMPARE(overlays.size(), QGuiApplication::screens().size());
    QList<QPointer<LoupeOverlay>> watched(overlays.begin(), overlays.end());

    QTest::keyClick(overlay(), Qt::Key_Escape);
    QCOMPARE(m_results.size(), 1);
    QVERIFY(!m_results.first());
    QVERIFY(!m_runningAtOutcome);
    QVERIFY(!m_pointerHiddenAtOutcome);
    QVERIFY(!QGuiApplication::overrideCursor());
    QVERIFY(shownOverlays().isEmpty());
    QTRY_VERIFY(std::all_of(watched.begin(), watched.end(), [](const auto &o) { return o.isNull(); }));
    // Nothing more arrives later.
    QTest::qWait(50);
    QCOMPARE(m_results.size(), 1);
}

void TestLoupe::enterPicksStoredPosition()
{
    startRun(QPoint(100, 200));
    QVERIFY(movePointer(QPoint(1234, 567)));
    QVERIFY(pointerOn(QPoint(1234, 567)));
    // Enter on the keypad works like Return: at the stored position.
    QTest::keyClick(overlay(), Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(m_results.size(), 1);
    QVERIFY(m_results.first());
    QVERIFY(sameColor(*m_results.first(), patternColor(QPoint(1234, 567))));
    QVERIFY(!m_runningAtOutcome);
    QVERIFY(!m_pointerHiddenAtOutcome);
}

void TestLoupe::otherInputKeepsRunning()
{
    startRun(QPoint(400, 400));
    for (Qt::Key key : {Qt::Key_A, Qt::Key_Space, Qt::Key_Tab})
        QTest::keyClick(overlay(), key);
    QVERIFY(xdotool({"click", "3"}));
    QTest::qWait(30);
    QVERIFY(m_sampler->isRunning());
    QVERIFY(m_results.isEmpty());
    QVERIFY(overlay()->isVisible());
    QTest::keyClick(overlay(), Qt::Key_Escape);
    QCOMPARE(m_results.size(), 1);
}

void TestLoupe::realKeysReachOverlay()
{
    startRun(QPoint(700, 700));
    // Through the X server: the overlay must really hold the keyboard.
    QTRY_VERIFY(QGuiApplication::focusWindow() == overlay());
    QVERIFY(xdotool({"key", "Right"}));
    QTRY_COMPARE(pointerPixel(), QPoint(701, 700));
    QVERIFY(xdotool({"key", "Escape"}));
    QTRY_COMPARE(m_results.size(), 1);
    QVERIFY(!m_results.first());
}

QTEST_MAIN(TestLoupe)
#include "tst_loupe.moc"
