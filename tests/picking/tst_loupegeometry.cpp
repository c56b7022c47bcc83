#include "picking/LoupeGeometry.h"

#include <QTest>

using namespace LoupeGeometry;

// Where the loupe goes beside the pointer and how its grid divides it. Which
// device pixel a point is on, and the arrows' stop at a screen's edge, are
// tested through the loupe itself, at every device pixel ratio.
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
