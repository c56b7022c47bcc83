#include "picking/LoupeGeometry.h"

#include <QTest>

using namespace LoupeGeometry;

class TestLoupeGeometry : public QObject
{
    Q_OBJECT

private slots:
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
        QFETCH(QPointF, expectedTopLeft);
        const QRectF rect = loupeRect(cursor, screen);
        QCOMPARE(rect.topLeft(), expectedTopLeft);
        QCOMPARE(rect.size(), QSizeF(140, 140));
    }

    void pixelUnderPoint_data()
    {
        QTest::addColumn<QRectF>("screen");
        QTest::addColumn<double>("ratio");
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<qint64>("x");
        QTest::addColumn<qint64>("y");

        const QRectF hd(0, 0, 1920, 1080);
        QTest::newRow("last pixel") << hd << 1.0 << QPointF(1919.99, 1079.5) << qint64(1919) << qint64(1079);
        QTest::newRow("ratio 2, odd pixel") << hd << 2.0 << QPointF(50.5, 38.5) << qint64(101) << qint64(77);
        QTest::newRow("ratio 1.5") << hd << 1.5 << QPointF(11, 3) << qint64(16) << qint64(4);
        QTest::newRow("offset screen")
            << QRectF(1920, 100, 800, 600) << 1.0 << QPointF(1925, 110) << qint64(5) << qint64(10);
        QTest::newRow("towards zero left of the screen")
            << hd << 1.0 << QPointF(-0.5, -1.5) << qint64(0) << qint64(-1);
        // A device pixel's own position in points, as a mouse event gives it:
        // the division may leave it a hair short of the pixel.
        for (double ratio : {1.25, 1.5, 1.75}) {
            QTest::addRow("ratio %g, a pixel's own point", ratio)
                << hd << ratio << QPointF(601 / ratio, 453 / ratio) << qint64(601) << qint64(453);
            QTest::addRow("ratio %g, on a screen to the right", ratio)
                << QRectF(1920, 0, 1000, 600) << ratio << QPointF(1920 + 41 / ratio, 7 / ratio) << qint64(41)
                << qint64(7);
        }
    }

    void pixelUnderPoint()
    {
        QFETCH(QRectF, screen);
        QFETCH(double, ratio);
        QFETCH(QPointF, point);
        QFETCH(qint64, x);
        QFETCH(qint64, y);
        const PixelIndex pixel = pixelIndex(point, screen, ratio);
        QCOMPARE(pixel.x, x);
        QCOMPARE(pixel.y, y);
        // And back: the middle of a pixel on the screen is on it.
        if (x >= 0 && y >= 0)
            QCOMPARE(pixelIndex(pixelCentre(pixel, screen, ratio), screen, ratio), pixel);
    }

    void clamping_data()
    {
        QTest::addColumn<QRect>("screen");
        QTest::addColumn<QPoint>("pixel");
        QTest::addColumn<QPoint>("expected");

        const QRect hd(0, 0, 1920, 1080);
        QTest::newRow("past max x") << hd << QPoint(1920, 500) << QPoint(1919, 500);
        QTest::newRow("below") << hd << QPoint(500, 1080) << QPoint(500, 1079);
        QTest::newRow("empty screen: minimum wins")
            << QRect(10, 10, 0, 0) << QPoint(50, 50) << QPoint(10, 10);
    }

    void clamping()
    {
        QFETCH(QRect, screen);
        QFETCH(QPoint, pixel);
        QFETCH(QPoint, expected);
        QCOMPARE(clampToScreen({pixel.x(), pixel.y()}, screen), (PixelIndex{expected.x(), expected.y()}));
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
};

QTEST_GUILESS_MAIN(TestLoupeGeometry)
#include "tst_loupegeometry.moc"
