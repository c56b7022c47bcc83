// Colors at the edge of floating-point precision, as a hostile file or a
// Convert entry can produce them: every notation stays in its own range and
// the Convert tab accepts its own rewritten texts again.
#include "model/ColorFormats.h"
#include "model/ConvertRules.h"

#include <QTest>

#include <cmath>

class TestNotationEdges : public QObject
{
    Q_OBJECT

private slots:
    void notationsStayInRange_data();
    void notationsStayInRange();
};

void TestNotationEdges::notationsStayInRange_data()
{
    QTest::addColumn<double>("red");
    QTest::addColumn<double>("green");
    QTest::addColumn<double>("blue");
    const double belowOne = std::nextafter(1.0, 0.0);
    const double tiny = std::numeric_limits<double>::denorm_min();
    QTest::newRow("one channel a hair below white") << 1.0 << belowOne << 1.0;
    QTest::newRow("two channels a hair below white") << belowOne << belowOne << 1.0;
    QTest::newRow("a hair above black") << tiny << 0.0 << 0.0;
    QTest::newRow("smallest normal above black") << 0.0 << std::numeric_limits<double>::min() << 0.0;
    QTest::newRow("HSL 70, .5, 100 as committed") << belowOne << belowOne << 1.0;
    QTest::newRow("white") << 1.0 << 1.0 << 1.0;
    QTest::newRow("black") << 0.0 << 0.0 << 0.0;
}

void TestNotationEdges::notationsStayInRange()
{
    QFETCH(double, red);
    QFETCH(double, green);
    QFETCH(double, blue);

    const HslComponents hsl = hslComponents(red, green, blue);
    QVERIFY2(hsl.hue >= 0 && hsl.hue <= 360, qPrintable(QString::number(hsl.hue)));
    QVERIFY2(hsl.saturation >= 0 && hsl.saturation <= 100, qPrintable(QString::number(hsl.saturation)));
    QVERIFY2(hsl.lightness >= 0 && hsl.lightness <= 100, qPrintable(QString::number(hsl.lightness)));
    QVERIFY(hslString(red, green, blue).size() <= 20);

    const RgbColor color{red, green, blue};
    for (const Notation notation :
         {Notation::Hex, Notation::Rgb, Notation::Hsl, Notation::Oklch, Notation::Cmyk}) {
        const QStringList texts = notationTexts(notation, color);
        QVERIFY2(parseNotation(notation, texts), qPrintable(texts.join(u',')));
    }
}

QTEST_APPLESS_MAIN(TestNotationEdges)
#include "tst_notationedges.moc"
