#include "ScreenPattern.h"

#include "picking/LoupeColorSampler.h"
#include "picking/LoupeGeometry.h"
#include "picking/LoupeOverlay.h"

#include "model/ColorFormats.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>

#include <functional>
#include <memory>
#include <optional>

using namespace LoupeGeometry;

// Runs whole on one screen, and its pixel-exact functions (click, grid,
// arrows, real keys) again at device pixel ratios 1.25 to 2 and on two
// screens of different ratios side by side. Pointer positions are device
// pixels of the root window, as xdotool and the pattern speak.

namespace {

// Rows for every screen: the screen's index, its name and its pixels.
void addPixelRows(const std::function<void(int, const QString &, const QRect &)> &add)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (int i = 0; i < screens.size(); ++i)
        add(i, screens.size() > 1 ? QStringLiteral("screen %1, ").arg(i) : QString(), rootPixels(screens[i]));
}

} // namespace

class TestLoupe : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (qEnvironmentVariableIsSet("QT_SCALE_FACTOR"))
            QCOMPARE(QGuiApplication::primaryScreen()->devicePixelRatio(),
                     qEnvironmentVariable("QT_SCALE_FACTOR").toDouble());
        if (qEnvironmentVariableIsSet("QT_SCREEN_SCALE_FACTORS")) {
            QCOMPARE(QGuiApplication::screens().size(), 2);
            QVERIFY(QGuiApplication::screens()[0]->devicePixelRatio()
                    != QGuiApplication::screens()[1]->devicePixelRatio());
        }
        m_pattern = std::make_unique<ScreenPattern>();
        QVERIFY(m_pattern->showAndSettle());
    }

    void cleanup()
    {
        m_sampler.reset();
        m_results.clear();
        m_kept.clear();
        // The next run must freeze the pattern, not what the overlay left.
        QVERIFY(m_pattern->waitUntilRepainted());
    }

    void clickPicksDevicePixelUnderPointer_data()
    {
        QTest::addColumn<QPoint>("rootPixel");
        addPixelRows([](int, const QString &screen, const QRect &pixels) {
            QTest::newRow(qPrintable(screen + "first")) << pixels.topLeft();
            QTest::newRow(qPrintable(screen + "last")) << pixels.bottomRight();
            // Odd, and a hair short of itself in points at 1.25 to 1.75.
            QTest::newRow(qPrintable(screen + "uneven")) << pixels.topLeft() + QPoint(601, 453);
        });
    }

    void clickPicksDevicePixelUnderPointer()
    {
        QFETCH(QPoint, rootPixel);
        startRun(rootPixels(QGuiApplication::primaryScreen()).center());
        QVERIFY(pointerOn(rootPixel));
        QVERIFY(xdotool({"click", "1"}));
        checkOutcome(rootPixel);
    }

    void loupeShowsPixelsAroundPointer_data()
    {
        QTest::addColumn<int>("screen");
        QTest::addColumn<QPoint>("rootPixel");
        addPixelRows([](int index, const QString &screen, const QRect &pixels) {
            QTest::newRow(qPrintable(screen + "top-left corner")) << index << pixels.topLeft();
            QTest::newRow(qPrintable(screen + "odd pixel in the middle"))
                << index << pixels.topLeft() + QPoint(601, 403);
        });
    }

    void loupeShowsPixelsAroundPointer()
    {
        QFETCH(int, screen);
        QFETCH(QPoint, rootPixel);
        startRun(rootPixels(QGuiApplication::primaryScreen()).center() + QPoint(-100, 60));
        QVERIFY(pointerOn(rootPixel));
        QString mismatch;
        QVERIFY2(
            QTest::qWaitFor([&] { return (mismatch = gridMismatch(screen, rootPixel, 11)).isEmpty(); }, 3000),
            qPrintable(mismatch));
    }

    void arrowsMoveOneDevicePixelAndClamp_data()
    {
        QTest::addColumn<QPoint>("start");
        QTest::addColumn<int>("key");
        QTest::addColumn<QPoint>("expected");
        addPixelRows([](int, const QString &screen, const QRect &pixels) {
            const QPoint middle = pixels.topLeft() + QPoint(301, 250);
            const QPoint right(pixels.right(), middle.y()), bottom(middle.x(), pixels.bottom());
            QTest::newRow(qPrintable(screen + "left"))
                << middle << int(Qt::Key_Left) << middle + QPoint(-1, 0);
            QTest::newRow(qPrintable(screen + "down"))
                << middle << int(Qt::Key_Down) << middle + QPoint(0, 1);
            QTest::newRow(qPrintable(screen + "right at max x stays"))
                << right << int(Qt::Key_Right) << right;
            QTest::newRow(qPrintable(screen + "down at max y stays"))
                << bottom << int(Qt::Key_Down) << bottom;
        });
    }

    void arrowsMoveOneDevicePixelAndClamp()
    {
        QFETCH(QPoint, start);
        QFETCH(int, key);
        QFETCH(QPoint, expected);
        startRun(start);
        QTest::keyClick(overlay(), Qt::Key(key));
        QCOMPARE(storedPixel(), std::optional<QPoint>(expected));
        QTRY_COMPARE(pointerPixel(), expected);
        for (QWindow *window : QGuiApplication::topLevelWindows()) {
            if (auto *shown = qobject_cast<LoupeOverlay *>(window); shown && shown->isVisible())
                QCOMPARE(shown->cursorPosition(), m_sampler->currentPosition());
        }
        // Return then picks exactly where the arrows left the pointer.
        QTest::keyClick(overlay(), Qt::Key_Return);
        checkOutcome(expected);
    }

    // Keys 1, 3, 5 and 9: a pick is the mean of the area's pixels that lie
    // on the screen, and the readout (the screen reader's too) says it first.
    void areaPickIsTheMean_data()
    {
        QTest::addColumn<int>("area");
        QTest::addColumn<QPoint>("rootPixel");
        const QRect pixels = rootPixels(QGuiApplication::primaryScreen());
        QTest::newRow("3x3") << 3 << pixels.topLeft() + QPoint(301, 255);
        QTest::newRow("5x5 across a 256 boundary") << 5 << pixels.topLeft() + QPoint(254, 510);
        QTest::newRow("9x9 at the top-left corner") << 9 << pixels.topLeft();
        QTest::newRow("9x9 at the bottom-right corner") << 9 << pixels.bottomRight();
        QTest::newRow("one pixel again") << 1 << pixels.topLeft() + QPoint(77, 99);
    }
    void areaPickIsTheMean()
    {
        QFETCH(int, area);
        QFETCH(QPoint, rootPixel);
        startRun(rootPixel);
        QTest::keyClick(overlay(), Qt::Key(Qt::Key_0 + area));
        const QRect taken = QRect(rootPixel - QPoint(area / 2, area / 2), QSize(area, area))
            & rootPixels(QGuiApplication::primaryScreen());
        qint64 sums[3] = {};
        for (int y = taken.top(); y <= taken.bottom(); ++y) {
            for (int x = taken.left(); x <= taken.right(); ++x) {
                const QRgb pixel = patternPixel(x, y);
                sums[0] += qRed(pixel), sums[1] += qGreen(pixel), sums[2] += qBlue(pixel);
            }
        }
        const double count = double(taken.width()) * taken.height();
        const SampledColor mean{sums[0] / count / 255, sums[1] / count / 255, sums[2] / count / 255, 1.0};
        QCOMPARE(overlay()->readout(), hexString(mean.red, mean.green, mean.blue));
        QCOMPARE(QAccessible::queryAccessibleInterface(overlay())->text(QAccessible::Description),
                 overlay()->readout());
        QVERIFY(xdotool({"click", "1"}));
        QTRY_COMPARE(m_results.size(), 1);
        QVERIFY(m_results.first() == mean);
    }

    // The wheel, + and - change the cells a side; the middle one stays the
    // pixel under the pointer.
    void zoomKeepsTheCentrePixel()
    {
        const QRect pixels = rootPixels(QGuiApplication::primaryScreen());
        const QPoint at = pixels.topLeft() + QPoint(401, 303);
        startRun(at);
        for (const auto &[key, cells] :
             {std::pair{Qt::Key_Plus, 15}, std::pair{Qt::Key_Plus, 21}, std::pair{Qt::Key_Plus, 21},
              std::pair{Qt::Key_Minus, 15}, std::pair{Qt::Key_Minus, 11}, std::pair{Qt::Key_Minus, 7}}) {
            QTest::keyClick(overlay(), key);
            QString mismatch;
            QVERIFY2(QTest::qWaitFor([&] { return (mismatch = gridMismatch(0, at, cells)).isEmpty(); }, 3000),
                     qPrintable(QString::number(cells) + u' ' + mismatch));
        }
        QTest::keyClick(overlay(), Qt::Key_Equal); // back to 11 for the other tests
        QVERIFY(QTest::qWaitFor([&] { return gridMismatch(0, at, 11).isEmpty(); }, 3000));
        QTest::keyClick(overlay(), Qt::Key_Escape);
        checkOutcome(std::nullopt);
    }

    // Shift+click and Shift+Return pick and go on; a plain click picks the
    // last and ends the run.
    void shiftPicksSeveralInARow()
    {
        const QPoint first(500, 400), second(520, 410), last(540, 420);
        startRun(first);
        QVERIFY(xdotool({"keydown", "shift", "click", "1", "keyup", "shift"}));
        QVERIFY(pointerOn(second));
        QTest::keyClick(overlay(), Qt::Key_Return, Qt::ShiftModifier);
        QTRY_COMPARE(m_kept.size(), 2);
        QVERIFY(m_sampler->isRunning() && m_results.isEmpty());
        QVERIFY(pointerOn(last));
        QVERIFY(xdotool({"click", "1"}));
        checkOutcome(last);
        QCOMPARE(m_kept, (QList<SampledColor>{patternColor(first), patternColor(second)}));
    }

    void realKeysReachOverlay()
    {
        startRun(QPoint(700, 700));
        // Through the X server: the overlay must really hold the keyboard.
        QTRY_VERIFY(QGuiApplication::focusWindow() == overlay());
        QVERIFY(xdotool({"key", "Right"}));
        QTRY_COMPARE(pointerPixel(), QPoint(701, 700));
        QVERIFY(xdotool({"key", "Escape"}));
        checkOutcome(std::nullopt);
    }

    // Where the loupe goes beside the pointer, and how its grid divides it.
    void loupePlacement_data()
    {
        QTest::addColumn<QRectF>("screen");
        QTest::addColumn<QPointF>("cursor");
        QTest::addColumn<QPointF>("expectedTopLeft");
        const QRectF hd(0, 0, 1920, 1080);
        QTest::newRow("just fits at the right") << hd << QPointF(1745, 500) << QPointF(1770, 335);
        QTest::newRow("one more point flips") << hd << QPointF(1746, 500) << QPointF(1581, 335);
        QTest::newRow("near top: flips below") << hd << QPointF(500, 174) << QPointF(525, 199);
        QTest::newRow("just fits at the top") << hd << QPointF(500, 175) << QPointF(525, 10);
        QTest::newRow("bottom-left corner: right and above") << hd << QPointF(0, 1079) << QPointF(25, 914);
        // A screen too small either way: flipped back to the default side.
        QTest::newRow("tiny screen") << QRectF(0, 0, 200, 200) << QPointF(100, 100) << QPointF(125, -65);
        QTest::newRow("second screen, right edge")
            << QRectF(1920, 0, 1280, 1024) << QPointF(3150, 500) << QPointF(2985, 335);
    }

    void loupePlacement()
    {
        QFETCH(QRectF, screen);
        QFETCH(QPointF, cursor);
        const QRectF rect = loupeRect(cursor, screen);
        QTEST(rect.topLeft(), "expectedTopLeft");
        QCOMPARE(rect.size(), QSizeF(140, 140));
    }

    void gridCells()
    {
        const QRectF loupe(100, 200, 140, 140);
        const double cell = 140.0 / 11.0;
        QCOMPARE(gridCellRect(loupe, 0, -5), QRectF(100, 200, cell, cell));
        QCOMPARE(gridCellRect(loupe, 5, 0), QRectF(100 + 5 * cell, 200 + 5 * cell, cell, cell));
        const QRectF last = gridCellRect(loupe, 10, 5);
        QCOMPARE(last.right(), loupe.right());
        QCOMPARE(last.bottom(), loupe.bottom());
    }

private:
    void startRun(QPoint rootPixel);
    // The root pixel the sampler's stored position is on.
    std::optional<QPoint> storedPixel() const;
    bool pointerOn(QPoint rootPixel) const
    {
        return movePointer(rootPixel) && QTest::qWaitFor([&] { return storedPixel() == rootPixel; }, 2000);
    }
    LoupeOverlay *overlay() const { return m_sampler->activeOverlay(); }
    // Where the loupe's grid of `cells` a side, on a screen, does not show
    // the pixels around `rootPixel`; empty when it does.
    QString gridMismatch(int screen, QPoint rootPixel, int cells) const
    {
        QScreen *on = QGuiApplication::screens()[screen];
        const QRect pixels = rootPixels(on);
        const double ratio = on->devicePixelRatio();
        const QPointF origin(on->geometry().topLeft());
        const QRectF loupe = loupeRect(m_sampler->currentPosition(),
                                       QRectF(on->geometry()).adjusted(0, readoutHeight, 0, -readoutHeight));
        const QImage shot = rootShot(pixels);
        const auto check = [&](QPoint probe, QPoint shown) {
            const QRgb wanted = pixels.contains(shown) ? patternPixel(shown.x(), shown.y()) & 0xffffff : 0;
            const QRgb seen = shot.pixel(probe - pixels.topLeft()) & 0xffffff;
            return seen == wanted
                ? QString()
                : QString::asprintf("%d,%d shows %06x instead of %06x", shown.x(), shown.y(), seen, wanted);
        };
        const int reach = cells / 2;
        for (int row = -reach; row <= reach; ++row) {
            for (int column = -reach; column <= reach; ++column) {
                // The middle cell's frame leaves too small a hole at 21 cells;
                // its neighbours place it.
                const QPoint probe =
                    ((gridCellRect(loupe, column + reach, row, cells).center() - origin) * ratio).toPoint();
                if (const QString wrong = check(pixels.topLeft() + probe, rootPixel + QPoint(column, row));
                    (row || column) && !wrong.isEmpty())
                    return wrong;
            }
        }
        // The pixel under the pointer stays uncovered, and so does the screen away from the loupe.
        const QPoint away = pixels.topLeft() + (rootPixel - pixels.topLeft()) / 2;
        return check(rootPixel, rootPixel) + check(away, away);
    }
    // Checks the one outcome of the run, and that the run had ended then.
    void checkOutcome(std::optional<QPoint> pickedAt);

    std::unique_ptr<ScreenPattern> m_pattern;
    std::unique_ptr<LoupeColorSampler> m_sampler;
    QList<std::optional<SampledColor>> m_results; // none: a cancel
    QList<SampledColor> m_kept;                   // picked with Shift
    bool m_runningAtOutcome = false;
    bool m_pointerHiddenAtOutcome = false;
};

std::optional<QPoint> TestLoupe::storedPixel() const
{
    const QPointF position = m_sampler->currentPosition();
    for (QScreen *screen : QGuiApplication::screens()) {
        const QRect g = screen->geometry();
        const auto pixel = pixelIndex(position, QRectF(g), screen->devicePixelRatio());
        const QPoint root = g.topLeft() + QPoint(int(pixel.x), int(pixel.y));
        if (position.x() >= g.x() && position.y() >= g.y() && rootPixels(screen).contains(root))
            return root;
    }
    return std::nullopt;
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
    connect(m_sampler.get(), &ColorSampler::colorKept, this,
            [this](const SampledColor &color) { m_kept.append(color); });
    connect(m_sampler.get(), &ColorSampler::failed, this, [](const QString &why) { QFAIL(qPrintable(why)); });
    m_sampler->start();
    QVERIFY(QTest::qWaitForWindowExposed(overlay()));
    QVERIFY(pointerOn(rootPixel));
}

void TestLoupe::checkOutcome(std::optional<QPoint> pickedAt)
{
    QTRY_COMPARE(m_results.size(), 1);
    QCOMPARE(m_results.first().has_value(), pickedAt.has_value());
    if (pickedAt)
        QVERIFY(m_results.first() == patternColor(*pickedAt));
    QVERIFY(!m_runningAtOutcome && !m_pointerHiddenAtOutcome);
}

QTEST_MAIN(TestLoupe)
#include "tst_loupe.moc"
