#include "ScreenPattern.h"

#include "picking/LoupeColorSampler.h"
#include "picking/LoupeGeometry.h"
#include "picking/LoupeOverlay.h"

#include <QApplication>
#include <QCursor>
#include <QPointer>
#include <QScreen>
#include <QTest>

#include <algorithm>
#include <memory>
#include <optional>

// Runs at a device pixel ratio of 1 and again of 2 (QT_SCALE_FACTOR=2).
// Pointer positions are device pixels, as xdotool and the pattern speak.

namespace {

bool sameColor(const SampledColor &a, const SampledColor &b)
{
    return a.red == b.red && a.green == b.green && a.blue == b.blue && a.alpha == b.alpha;
}

QList<LoupeOverlay *> shownOverlays()
{
    QList<LoupeOverlay *> overlays;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *overlay = qobject_cast<LoupeOverlay *>(widget); overlay && overlay->isVisible())
            overlays.append(overlay);
    }
    return overlays;
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
    void gridFollowsPointerBlackBeyondTheEdge_data();
    void gridFollowsPointerBlackBeyondTheEdge();
    void arrowsMoveRealPointerAndClamp_data();
    void arrowsMoveRealPointerAndClamp();
    void escapeCancelsOnceAndCleansUp();
    void enterPicksStoredPosition();
    void otherInputKeepsRunning();
    void realKeysReachOverlay();

private:
    void startRun(QPoint devicePixel);
    bool pointerOn(QPoint devicePixel) const;
    LoupeOverlay *overlay() const { return m_sampler ? m_sampler->activeOverlay() : nullptr; }
    SampledColor patternAt(QPointF point) const
    {
        return patternColor(int(point.x() * m_ratio), int(point.y() * m_ratio));
    }

    double m_ratio = 1.0;
    QRectF m_screen;
    std::unique_ptr<ScreenPatternWindow> m_pattern;
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
    QScreen *screen = QGuiApplication::primaryScreen();
    m_ratio = screen->devicePixelRatio();
    QCOMPARE(m_ratio, qEnvironmentVariable("QT_SCALE_FACTOR", QStringLiteral("1")).toDouble());
    m_screen = QRectF(screen->geometry());
    QCOMPARE(m_screen.size() * m_ratio, QSizeF(1920, 1080));
    m_pattern = std::make_unique<ScreenPatternWindow>();
    QVERIFY(m_pattern->showAndSettle());
}

void TestLoupe::cleanup()
{
    m_sampler.reset();
    m_results.clear();
    // The next run must capture the pattern, not what the overlay left.
    QVERIFY(m_pattern->waitUntilOnScreen());
}

bool TestLoupe::pointerOn(QPoint devicePixel) const
{
    return QTest::qWaitFor(
        [&] {
            return LoupeGeometry::pixelIndex(m_sampler->currentPosition(), m_screen, m_ratio)
                == LoupeGeometry::PixelIndex{devicePixel.x(), devicePixel.y()};
        },
        2000);
}

void TestLoupe::startRun(QPoint devicePixel)
{
    QVERIFY(xdotool({"mousemove", QString::number(devicePixel.x()), QString::number(devicePixel.y())}));
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
    QVERIFY(pointerOn(devicePixel));
}

void TestLoupe::clickPicksDevicePixelUnderPointer_data()
{
    QTest::addColumn<QPoint>("devicePixel");
    QTest::newRow("first") << QPoint(0, 0);
    QTest::newRow("top-right corner") << QPoint(1919, 0);
    QTest::newRow("bottom-left corner") << QPoint(0, 1079);
    QTest::newRow("last") << QPoint(1919, 1079);
    QTest::newRow("odd, odd") << QPoint(101, 77);
    QTest::newRow("even, odd, high bits") << QPoint(1400, 1027);
}

void TestLoupe::clickPicksDevicePixelUnderPointer()
{
    QFETCH(QPoint, devicePixel);
    startRun(QPoint(960, 540));
    QVERIFY(xdotool({"mousemove", QString::number(devicePixel.x()), QString::number(devicePixel.y())}));
    QVERIFY(pointerOn(devicePixel));
    QVERIFY(xdotool({"click", "1"}));
    QTRY_COMPARE(m_results.size(), 1);
    QVERIFY(m_results.first());
    QVERIFY(sameColor(*m_results.first(), patternColor(devicePixel.x(), devicePixel.y())));
    QVERIFY(!m_runningAtOutcome);
    QVERIFY(!m_pointerHiddenAtOutcome);
}

void TestLoupe::gridFollowsPointerBlackBeyondTheEdge_data()
{
    QTest::addColumn<QPoint>("devicePixel");
    QTest::newRow("top-left corner") << QPoint(0, 0);
    QTest::newRow("bottom-right corner") << QPoint(1919, 1079);
    QTest::newRow("top edge, middle") << QPoint(960, 2);
    QTest::newRow("odd pixel in the middle") << QPoint(601, 403);
}

void TestLoupe::gridFollowsPointerBlackBeyondTheEdge()
{
    QFETCH(QPoint, devicePixel);
    startRun(QPoint(700, 500));
    QVERIFY(xdotool({"mousemove", QString::number(devicePixel.x()), QString::number(devicePixel.y())}));
    QVERIFY(pointerOn(devicePixel));
    QCOMPARE(overlay()->cursorPosition(), m_sampler->currentPosition());

    const QImage shot = overlay()->grab().toImage();
    const QRectF loupe = LoupeGeometry::loupeRect(m_sampler->currentPosition(), m_screen);
    for (int row = -5; row <= 5; ++row) {
        for (int column = 0; column < 11; ++column) {
            // A point clear of the outline and of the centre cell's frame.
            const QPointF centre = LoupeGeometry::gridCellRect(loupe, column, row).center();
            const QPoint probe = (centre * m_ratio - QPointF(0.5, 0.5)).toPoint();
            const int x = devicePixel.x() - 5 + column;
            const int y = devicePixel.y() + row;
            const bool onScreen = x >= 0 && y >= 0 && x < 1920 && y < 1080;
            const QRgb expected = (onScreen ? patternPixel(x, y) : qRgb(0, 0, 0)) & 0xffffff;
            const QRgb seen = shot.pixel(probe) & 0xffffff;
            QVERIFY2(seen == expected,
                     qPrintable(QStringLiteral("cell %1,%2: %3 instead of %4")
                                    .arg(column)
                                    .arg(row)
                                    .arg(seen, 6, 16)
                                    .arg(expected, 6, 16)));
        }
    }
    // The crosshair leaves the pixel under the pointer itself uncovered.
    QCOMPARE(shot.pixel(devicePixel) & 0xffffff, patternPixel(devicePixel.x(), devicePixel.y()) & 0xffffff);
}

void TestLoupe::arrowsMoveRealPointerAndClamp_data()
{
    QTest::addColumn<QPoint>("start");
    QTest::addColumn<int>("key");
    QTest::addColumn<QPoint>("expected");

    // In points; the last point of the screen depends on the ratio.
    const QPoint last = QGuiApplication::primaryScreen()->geometry().bottomRight();
    QTest::newRow("left") << QPoint(250, 250) << int(Qt::Key_Left) << QPoint(249, 250);
    QTest::newRow("right") << QPoint(250, 250) << int(Qt::Key_Right) << QPoint(251, 250);
    QTest::newRow("up") << QPoint(250, 250) << int(Qt::Key_Up) << QPoint(250, 249);
    QTest::newRow("down") << QPoint(250, 250) << int(Qt::Key_Down) << QPoint(250, 251);
    QTest::newRow("left at min x stays") << QPoint(0, 250) << int(Qt::Key_Left) << QPoint(0, 250);
    QTest::newRow("right at max x stays")
        << QPoint(last.x(), 250) << int(Qt::Key_Right) << QPoint(last.x(), 250);
    QTest::newRow("up at min y stays") << QPoint(250, 0) << int(Qt::Key_Up) << QPoint(250, 0);
    QTest::newRow("down at max y stays")
        << QPoint(250, last.y()) << int(Qt::Key_Down) << QPoint(250, last.y());
}

void TestLoupe::arrowsMoveRealPointerAndClamp()
{
    QFETCH(QPoint, start);
    QFETCH(int, key);
    QFETCH(QPoint, expected);
    startRun((QPointF(start) * m_ratio).toPoint());
    QTest::keyClick(overlay(), Qt::Key(key));
    QCOMPARE(QCursor::pos(), expected);
    QCOMPARE(m_sampler->currentPosition(), QPointF(expected));
    QCOMPARE(overlay()->cursorPosition(), QPointF(expected));
    QVERIFY(m_sampler->isRunning());
    // Return then picks exactly where the arrows left the pointer.
    QTest::keyClick(overlay(), Qt::Key_Return);
    QCOMPARE(m_results.size(), 1);
    QVERIFY(m_results.first());
    QVERIFY(sameColor(*m_results.first(), patternAt(expected)));
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
    QVERIFY(xdotool({"mousemove", "1234", "567"}));
    QVERIFY(pointerOn(QPoint(1234, 567)));
    // Enter on the keypad works like Return: at the stored position.
    QTest::keyClick(overlay(), Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(m_results.size(), 1);
    QVERIFY(m_results.first());
    QVERIFY(sameColor(*m_results.first(), patternColor(1234, 567)));
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
    QTRY_VERIFY(QGuiApplication::focusWindow() == overlay()->windowHandle());
    const QPoint before = QCursor::pos();
    QVERIFY(xdotool({"key", "Right"}));
    QTRY_COMPARE(QCursor::pos(), before + QPoint(1, 0));
    QVERIFY(xdotool({"key", "Escape"}));
    QTRY_COMPARE(m_results.size(), 1);
    QVERIFY(!m_results.first());
}

QTEST_MAIN(TestLoupe)
#include "tst_loupe.moc"
