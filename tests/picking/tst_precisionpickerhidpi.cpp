#include "ScreenPattern.h"

#include "picking/LoupeGeometry.h"
#include "picking/PrecisionColorPicker.h"
#include "picking/PrecisionColorPickerView.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>

#include <memory>

// Run with QT_SCALE_FACTOR=2: two device pixels per point, so the pointer
// can rest on a device pixel that no whole point reaches.
class TestPrecisionPickerHiDpi : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void clickPicksDevicePixelUnderPointer_data();
    void clickPicksDevicePixelUnderPointer();
    void gridCentreIsThatPixel();
    void arrowMovesOnePoint();

private:
    void startRun();

    std::unique_ptr<ScreenPatternWindow> m_pattern;
    std::unique_ptr<PrecisionColorPicker> m_picker;
    QList<std::optional<SampledColor>> m_results;
};

void TestPrecisionPickerHiDpi::initTestCase()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        QSKIP("needs an X display");
    QCOMPARE(QGuiApplication::primaryScreen()->devicePixelRatio(), 2.0);
    m_pattern = std::make_unique<ScreenPatternWindow>();
    QVERIFY(m_pattern->showAndSettle());
}

void TestPrecisionPickerHiDpi::cleanup()
{
    m_picker.reset();
    m_results.clear();
    QVERIFY(m_pattern->waitUntilOnScreen());
}

void TestPrecisionPickerHiDpi::startRun()
{
    m_picker = std::make_unique<PrecisionColorPicker>(
        [this](const std::optional<SampledColor> &color) { m_results.append(color); });
    const QString failure = m_picker->start();
    QVERIFY2(failure.isEmpty(), qPrintable(failure));
    QVERIFY(QTest::qWaitForWindowExposed(m_picker->pickerView()));
    QCOMPARE(m_picker->captures().first().image.size(), QSize(1920, 1080));
}

void TestPrecisionPickerHiDpi::clickPicksDevicePixelUnderPointer_data()
{
    QTest::addColumn<QPoint>("devicePixel");
    QTest::newRow("odd, odd") << QPoint(101, 77);
    QTest::newRow("even, odd") << QPoint(1400, 333);
    QTest::newRow("last device pixel") << QPoint(1919, 1079);
    QTest::newRow("first device pixel") << QPoint(0, 0);
}

void TestPrecisionPickerHiDpi::clickPicksDevicePixelUnderPointer()
{
    QFETCH(QPoint, devicePixel);
    QVERIFY(xdotool({"mousemove", "960", "540"}));
    startRun();
    // xdotool speaks device pixels.
    QVERIFY(xdotool({"mousemove", QString::number(devicePixel.x()), QString::number(devicePixel.y())}));
    QTRY_VERIFY(LoupeGeometry::pixelIndex(m_picker->currentPosition(), QRectF(0, 0, 960, 540), 2.0)
                == (LoupeGeometry::PixelIndex{devicePixel.x(), devicePixel.y()}));
    QVERIFY(xdotool({"click", "1"}));
    QTRY_COMPARE(m_results.size(), 1);
    QVERIFY(m_results.first());
    const SampledColor expected = patternColor(devicePixel.x(), devicePixel.y());
    QVERIFY(m_results.first()->red == expected.red);
    QVERIFY(m_results.first()->green == expected.green);
    QVERIFY(m_results.first()->blue == expected.blue);
}

void TestPrecisionPickerHiDpi::gridCentreIsThatPixel()
{
    QVERIFY(xdotool({"mousemove", "601", "403"}));
    startRun();
    QTRY_VERIFY(LoupeGeometry::pixelIndex(m_picker->currentPosition(), QRectF(0, 0, 960, 540), 2.0)
                == (LoupeGeometry::PixelIndex{601, 403}));
    PrecisionColorPickerView *view = m_picker->pickerView();
    const QImage shot = view->grab().toImage();
    QCOMPARE(shot.devicePixelRatio(), 2.0);
    for (int column : {0, 4, 5, 6, 10}) {
        for (int row : {-5, 0, 1, 5}) {
            const QPointF centre = LoupeGeometry::gridCellRect(view->loupeRect(), column, row).center();
            const QRgb seen = shot.pixel((centre * 2).toPoint()) & 0xffffff;
            QCOMPARE(seen, patternPixel(601 - 5 + column, 403 + row) & 0xffffff);
        }
    }
    // The open centre of the crosshair shows the pixel itself, unmagnified.
    QCOMPARE(shot.pixel(601, 403) & 0xffffff, patternPixel(601, 403) & 0xffffff);
}

void TestPrecisionPickerHiDpi::arrowMovesOnePoint()
{
    QVERIFY(xdotool({"mousemove", "200", "200"}));
    startRun();
    QTest::keyClick(m_picker->pickerView(), Qt::Key_Right);
    QCOMPARE(QCursor::pos(), QPoint(101, 100));
    QTest::keyClick(m_picker->pickerView(), Qt::Key_Return);
    QCOMPARE(m_results.size(), 1);
    QVERIFY(m_results.first());
    QVERIFY(m_results.first()->red == patternColor(202, 200).red);
    QVERIFY(m_results.first()->green == patternColor(202, 200).green);
}

QTEST_MAIN(TestPrecisionPickerHiDpi)
#include "tst_precisionpickerhidpi.moc"
