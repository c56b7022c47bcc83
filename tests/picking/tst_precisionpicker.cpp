#include "ScreenPattern.h"

#include "picking/LoupeGeometry.h"
#include "picking/PrecisionColorPicker.h"
#include "picking/PrecisionColorPickerView.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>

#include <memory>

Q_DECLARE_METATYPE(SampledColor)

namespace {

// Every completion a run delivered, in order.
struct CompletionLog
{
    QList<std::optional<SampledColor>> results;
    bool runningAtCompletion = false;
    bool pointerHiddenAtCompletion = false;
};

bool sameColor(const SampledColor &a, const SampledColor &b)
{
    return a.red == b.red && a.green == b.green && a.blue == b.blue && a.alpha == b.alpha;
}

QByteArray describe(const std::optional<SampledColor> &color)
{
    if (!color)
        return "none";
    return QByteArray::number(color->red * 255) + ',' + QByteArray::number(color->green * 255)
         + ',' + QByteArray::number(color->blue * 255) + ',' + QByteArray::number(color->alpha);
}

} // namespace

class TestPrecisionPicker : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void samplesExactPixels_data();
    void samplesExactPixels();
    void loupeFollowsAndFlips_data();
    void loupeFollowsAndFlips();
    void gridShowsPixelsAndBlackBeyondTheEdge_data();
    void gridShowsPixelsAndBlackBeyondTheEdge();
    void arrowsMoveRealPointerAndClamp_data();
    void arrowsMoveRealPointerAndClamp();
    void escapeCancelsOnceAndCleansUp();
    void returnPicksStoredPositionAfterStopping();
    void unhandledKeyKeepsRunning();
    void rightClickKeepsRunning();
    void realClickPicksPixelUnderPointer();
    void realEscapeKeyReachesOverlay();
    void redrawTouchesOnlyTheLoupe();

private:
    void startRun(QPoint pointer);
    PrecisionColorPickerView *view() const;
    bool moveRealPointer(QPoint pointer);

    std::unique_ptr<ScreenPatternWindow> m_pattern;
    std::unique_ptr<PrecisionColorPicker> m_picker;
    CompletionLog m_log;
};

void TestPrecisionPicker::initTestCase()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        QSKIP("needs an X display");
    QCOMPARE(QGuiApplication::primaryScreen()->geometry(), QRect(0, 0, 1920, 1080));
    m_pattern = std::make_unique<ScreenPatternWindow>();
    QVERIFY(m_pattern->showAndSettle());
}

void TestPrecisionPicker::cleanup()
{
    m_picker.reset();
    m_log = {};
    // The next run must capture the pattern, not what the overlay left.
    QVERIFY(m_pattern->waitUntilOnScreen());
}

bool TestPrecisionPicker::moveRealPointer(QPoint pointer)
{
    QCursor::setPos(pointer);
    return QTest::qWaitFor([&] { return QCursor::pos() == pointer; }, 2000);
}

void TestPrecisionPicker::startRun(QPoint pointer)
{
    QVERIFY(moveRealPointer(pointer));
    m_picker = std::make_unique<PrecisionColorPicker>();
    m_picker->setCompletion([this](const std::optional<SampledColor> &color) {
        m_log.results.append(color);
        m_log.runningAtCompletion = m_picker->isRunning();
        m_log.pointerHiddenAtCompletion = QGuiApplication::overrideCursor() != nullptr;
    });
    const QString failure = m_picker->start();
    QVERIFY2(failure.isEmpty(), qPrintable(failure));
    QVERIFY(m_picker->isRunning());
    QVERIFY(view());
    QVERIFY(QTest::qWaitForWindowExposed(view()));
    QCOMPARE(m_picker->currentPosition(), QPointF(pointer));
}

PrecisionColorPickerView *TestPrecisionPicker::view() const
{
    return m_picker ? m_picker->pickerView() : nullptr;
}

void TestPrecisionPicker::samplesExactPixels_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QPoint>("pixel");

    QTest::newRow("top-left corner") << QPointF(0, 0) << QPoint(0, 0);
    QTest::newRow("top-right corner") << QPointF(1919, 0) << QPoint(1919, 0);
    QTest::newRow("bottom-left corner") << QPointF(0, 1079) << QPoint(0, 1079);
    QTest::newRow("last pixel") << QPointF(1919, 1079) << QPoint(1919, 1079);
    QTest::newRow("last pixel, fractional point") << QPointF(1919.75, 1079.5) << QPoint(1919, 1079);
    QTest::newRow("middle") << QPointF(777, 333) << QPoint(777, 333);
    QTest::newRow("high bits of both") << QPointF(1555, 1027) << QPoint(1555, 1027);
}

void TestPrecisionPicker::samplesExactPixels()
{
    QFETCH(QPointF, point);
    QFETCH(QPoint, pixel);
    startRun(QPoint(960, 540));
    const auto color = m_picker->sampleColor(point);
    QVERIFY(color);
    QVERIFY2(sameColor(*color, patternColor(pixel.x(), pixel.y())),
             describe(color) + " instead of " + describe(patternColor(pixel.x(), pixel.y())));
}

void TestPrecisionPicker::loupeFollowsAndFlips_data()
{
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<QPointF>("loupeTopLeft");

    QTest::newRow("free: above right") << QPoint(500, 500) << QPointF(525, 335);
    QTest::newRow("50 from the right edge: left") << QPoint(1870, 500) << QPointF(1705, 335);
    QTest::newRow("near the top: below") << QPoint(500, 100) << QPointF(525, 125);
    QTest::newRow("top-left corner: right and below") << QPoint(0, 0) << QPointF(25, 25);
    QTest::newRow("bottom-right corner: left and above") << QPoint(1919, 1079) << QPointF(1754, 914);
}

void TestPrecisionPicker::loupeFollowsAndFlips()
{
    QFETCH(QPoint, pointer);
    QFETCH(QPointF, loupeTopLeft);
    startRun(QPoint(960, 540));
    // Through the real pointer: the overlay hears the move and follows.
    QVERIFY(moveRealPointer(pointer));
    QTRY_COMPARE(m_picker->currentPosition(), QPointF(pointer));
    QCOMPARE(view()->cursorPosition(), QPointF(pointer));
    QVERIFY(view()->showsLoupe());
    QCOMPARE(view()->loupeRect(), QRectF(loupeTopLeft, QSizeF(140, 140)));
}

void TestPrecisionPicker::gridShowsPixelsAndBlackBeyondTheEdge_data()
{
    QTest::addColumn<QPoint>("pointer");
    QTest::newRow("top-left corner") << QPoint(0, 0);
    QTest::newRow("bottom-right corner") << QPoint(1919, 1079);
    QTest::newRow("top edge, middle") << QPoint(960, 2);
    QTest::newRow("middle") << QPoint(640, 480);
}

void TestPrecisionPicker::gridShowsPixelsAndBlackBeyondTheEdge()
{
    QFETCH(QPoint, pointer);
    startRun(pointer);
    const QImage shot = view()->grab().toImage();
    const QRectF loupe = view()->loupeRect();
    for (int row = -5; row <= 5; ++row) {
        for (int column = 0; column < 11; ++column) {
            const QRectF cell = LoupeGeometry::gridCellRect(loupe, column, row);
            // A point clear of the outline and of the centre cell's frame.
            const QPoint probe = (cell.center() - QPointF(0.5, 0.5))
                                     .toPoint();
            const int x = pointer.x() - 5 + column;
            const int y = pointer.y() + row;
            const bool onScreen = x >= 0 && y >= 0 && x < 1920 && y < 1080;
            const QRgb expected = onScreen ? patternPixel(x, y) : qRgb(0, 0, 0);
            const QRgb seen = shot.pixel(probe) & 0xffffff;
            QVERIFY2(seen == (expected & 0xffffff),
                     qPrintable(QStringLiteral("cell %1,%2: %3 instead of %4")
                                    .arg(column)
                                    .arg(row)
                                    .arg(seen, 6, 16)
                                    .arg(expected & 0xffffff, 6, 16)));
        }
    }
    // The crosshair leaves the pixel under the pointer itself uncovered.
    QCOMPARE(shot.pixel(pointer) & 0xffffff, patternPixel(pointer.x(), pointer.y()) & 0xffffff);
}

void TestPrecisionPicker::arrowsMoveRealPointerAndClamp_data()
{
    QTest::addColumn<QPoint>("start");
    QTest::addColumn<int>("key");
    QTest::addColumn<QPoint>("expected");

    QTest::newRow("left") << QPoint(500, 500) << int(Qt::Key_Left) << QPoint(499, 500);
    QTest::newRow("right") << QPoint(500, 500) << int(Qt::Key_Right) << QPoint(501, 500);
    QTest::newRow("up") << QPoint(500, 500) << int(Qt::Key_Up) << QPoint(500, 499);
    QTest::newRow("down") << QPoint(500, 500) << int(Qt::Key_Down) << QPoint(500, 501);
    QTest::newRow("left at min x stays") << QPoint(0, 500) << int(Qt::Key_Left) << QPoint(0, 500);
    QTest::newRow("right at max x stays") << QPoint(1919, 500) << int(Qt::Key_Right) << QPoint(1919, 500);
    QTest::newRow("up at min y stays") << QPoint(500, 0) << int(Qt::Key_Up) << QPoint(500, 0);
    QTest::newRow("down at max y stays") << QPoint(500, 1079) << int(Qt::Key_Down) << QPoint(500, 1079);
}

void TestPrecisionPicker::arrowsMoveRealPointerAndClamp()
{
    QFETCH(QPoint, start);
    QFETCH(int, key);
    QFETCH(QPoint, expected);
    startRun(start);
    QTest::keyClick(view(), Qt::Key(key));
    QCOMPARE(m_picker->currentPosition(), QPointF(expected));
    QCOMPARE(QCursor::pos(), expected);
    QCOMPARE(view()->cursorPosition(), QPointF(expected));
    QVERIFY(m_picker->isRunning());
    // Return then picks exactly where the arrows left the pointer.
    QTest::keyClick(view(), Qt::Key_Return);
    QCOMPARE(m_log.results.size(), 1);
    QVERIFY(m_log.results.first());
    QVERIFY(sameColor(*m_log.results.first(), patternColor(expected.x(), expected.y())));
}

void TestPrecisionPicker::escapeCancelsOnceAndCleansUp()
{
    startRun(QPoint(300, 300));
    QVERIFY(QGuiApplication::overrideCursor());
    QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::BlankCursor);
    const QList<PrecisionColorPickerView *> overlays = m_picker->overlayWindows();
    QCOMPARE(overlays.size(), QGuiApplication::screens().size());
    QList<QPointer<PrecisionColorPickerView>> watched(overlays.begin(), overlays.end());

    QTest::keyClick(view(), Qt::Key_Escape);
    QCOMPARE(m_log.results.size(), 1);
    QVERIFY(!m_log.results.first());
    QVERIFY(!m_log.runningAtCompletion);
    QVERIFY(!m_log.pointerHiddenAtCompletion);
    QVERIFY(!QGuiApplication::overrideCursor());
    QVERIFY(m_picker->overlayWindows().isEmpty());
    QVERIFY(!m_picker->pickerView());
    for (const auto &overlay : watched)
        QVERIFY(!overlay || !overlay->isVisible());
    QTRY_VERIFY(std::all_of(watched.begin(), watched.end(), [](const auto &o) { return o.isNull(); }));

    // Nothing more arrives later.
    QTest::qWait(50);
    QCOMPARE(m_log.results.size(), 1);
}

void TestPrecisionPicker::returnPicksStoredPositionAfterStopping()
{
    startRun(QPoint(100, 200));
    QVERIFY(moveRealPointer(QPoint(1234, 567)));
    QTRY_COMPARE(m_picker->currentPosition(), QPointF(1234, 567));
    // Enter on the keypad works the same; it reads the stored position.
    QTest::keyClick(view(), Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(m_log.results.size(), 1);
    QVERIFY(m_log.results.first());
    QVERIFY(sameColor(*m_log.results.first(), patternColor(1234, 567)));
    QVERIFY(!m_log.runningAtCompletion);
    QVERIFY(!m_log.pointerHiddenAtCompletion);
}

void TestPrecisionPicker::unhandledKeyKeepsRunning()
{
    startRun(QPoint(400, 400));
    QTest::keyClick(view(), Qt::Key_A);
    QTest::keyClick(view(), Qt::Key_Space);
    QTest::keyClick(view(), Qt::Key_Tab);
    QTest::qWait(30);
    QVERIFY(m_picker->isRunning());
    QVERIFY(m_log.results.isEmpty());
    QVERIFY(view()->isVisible());
    QTest::keyClick(view(), Qt::Key_Escape);
    QCOMPARE(m_log.results.size(), 1);
}

void TestPrecisionPicker::rightClickKeepsRunning()
{
    startRun(QPoint(400, 400));
    QTest::mouseClick(view(), Qt::RightButton, {}, QPoint(400, 400));
    QVERIFY(m_picker->isRunning());
    QVERIFY(m_log.results.isEmpty());
}

void TestPrecisionPicker::realClickPicksPixelUnderPointer()
{
    startRun(QPoint(50, 50));
    QVERIFY(xdotool({"mousemove", "1601", "903"}));
    QTRY_COMPARE(m_picker->currentPosition(), QPointF(1601, 903));
    QVERIFY(xdotool({"click", "1"}));
    QTRY_COMPARE(m_log.results.size(), 1);
    QVERIFY(m_log.results.first());
    QVERIFY(sameColor(*m_log.results.first(), patternColor(1601, 903)));
    QVERIFY(!QGuiApplication::overrideCursor());
}

void TestPrecisionPicker::realEscapeKeyReachesOverlay()
{
    startRun(QPoint(700, 700));
    // Through the X server: the overlay must really hold the keyboard.
    QTRY_VERIFY(QGuiApplication::focusWindow() == view()->windowHandle());
    QVERIFY(xdotool({"key", "Right"}));
    QTRY_COMPARE(QCursor::pos(), QPoint(701, 700));
    QVERIFY(xdotool({"key", "Escape"}));
    QTRY_COMPARE(m_log.results.size(), 1);
    QVERIFY(!m_log.results.first());
}

void TestPrecisionPicker::redrawTouchesOnlyTheLoupe()
{
    startRun(QPoint(500, 500));
    const QRegion dirty = view()->loupeRegion(QPointF(500, 500)) + view()->loupeRegion(QPointF(501, 500));
    QVERIFY(dirty.boundingRect().width() < 250);
    QVERIFY(dirty.boundingRect().height() < 250);
    QVERIFY(dirty.contains(QPoint(500, 500)));
    QVERIFY(view()->loupeRegion(QPointF(-5, -5)).isEmpty());
}

QTEST_MAIN(TestPrecisionPicker)
#include "tst_precisionpicker.moc"
