#include "model/ConvertRules.h"
#include "model/NumberParsing.h"

#include <QTest>

#include <cmath>
#include <limits>

class TestConvertRules : public QObject
{
    Q_OBJECT

private slots:
    void wholeNumbers_data();
    void wholeNumbers();
    void decimals_data();
    void decimals();
    void groups_data();
    void groups();
    void rewrittenTexts();
    void edgeColorsStayInRange_data();
    void edgeColorsStayInRange();
};

void TestConvertRules::wholeNumbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<qint64>("value");
    QTest::newRow("plain") << "255" << true << qint64(255);
    QTest::newRow("plus") << "+12" << true << qint64(12);
    QTest::newRow("minus") << "-3" << true << qint64(-3);
    QTest::newRow("leading zeros") << "007" << true << qint64(7);
    QTest::newRow("fraction") << "12.5" << false << qint64(0);
    QTest::newRow("exponent") << "1e2" << false << qint64(0);
    QTest::newRow("blank before") << " 1" << false << qint64(0);
    QTest::newRow("blank after") << "1 " << false << qint64(0);
    QTest::newRow("empty") << "" << false << qint64(0);
    QTest::newRow("sign only") << "-" << false << qint64(0);
    QTest::newRow("overflow") << "99999999999999999999" << false << qint64(0);
    QTest::newRow("arabic-indic digit") << QString::fromUtf8("\u0661") << false << qint64(0);
}

void TestConvertRules::wholeNumbers()
{
    QFETCH(QString, text);
    QFETCH(bool, ok);
    QFETCH(qint64, value);
    const std::optional<qint64> parsed = parseWholeNumber(text);
    QCOMPARE(parsed.has_value(), ok);
    if (ok)
        QCOMPARE(*parsed, value);
}

void TestConvertRules::decimals_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<double>("value");
    QTest::newRow("integer") << "70" << true << 70.0;
    QTest::newRow("point") << "120.50" << true << 120.5;
    QTest::newRow("leading point") << ".5" << true << 0.5;
    QTest::newRow("exponent") << "1e2" << true << 100.0;
    QTest::newRow("negative") << "-0.25" << true << -0.25;
    QTest::newRow("comma") << "0,5" << false << 0.0;
    QTest::newRow("blank") << " 5" << false << 0.0;
    QTest::newRow("trailing blank") << "5 " << false << 0.0;
    QTest::newRow("empty") << "" << false << 0.0;
    QTest::newRow("letters") << "5px" << false << 0.0;
    QTest::newRow("infinity") << "inf" << true << std::numeric_limits<double>::infinity();
    QTest::newRow("overflow") << "1e999" << true << std::numeric_limits<double>::infinity();
    QTest::newRow("non-ascii") << QString::fromUtf8("5\u00a0") << false << 0.0;
}

void TestConvertRules::decimals()
{
    QFETCH(QString, text);
    QFETCH(bool, ok);
    QFETCH(double, value);
    const std::optional<double> parsed = parseDecimalNumber(text);
    QCOMPARE(parsed.has_value(), ok);
    if (ok)
        QCOMPARE(*parsed, value);
    QVERIFY(std::isnan(parseDecimalNumber(QStringLiteral("nan")).value_or(0)));
}

void TestConvertRules::groups_data()
{
    QTest::addColumn<int>("notation");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QString>("hex"); // empty: refused

    const int hex = int(Notation::Hex), rgb = int(Notation::Rgb), hsl = int(Notation::Hsl),
              oklch = int(Notation::Oklch), cmyk = int(Notation::Cmyk);
    QTest::newRow("hex without #") << hex << QStringList{"ff0000"} << "#FF0000";
    QTest::newRow("hex invalid") << hex << QStringList{"fff"} << "";
    QTest::newRow("rgb") << rgb << QStringList{"255", "128", "0"} << "#FF8000";
    QTest::newRow("rgb 256") << rgb << QStringList{"256", "0", "0"} << "";
    QTest::newRow("rgb 12.5") << rgb << QStringList{"12.5", "0", "0"} << "";
    QTest::newRow("rgb negative") << rgb << QStringList{"-1", "0", "0"} << "";
    QTest::newRow("rgb signed zero") << rgb << QStringList{"+0", "-0", "0"} << "#000000";
    QTest::newRow("hsl 360") << hsl << QStringList{"360", "100", "50"} << "#FF0000";
    QTest::newRow("hsl 361") << hsl << QStringList{"361", "100", "50"} << "";
    QTest::newRow("hsl nan") << hsl << QStringList{"nan", "100", "50"} << "";
    QTest::newRow("hsl decimal") << hsl << QStringList{"120.50", "100", "50"} << "#00FF02";
    QTest::newRow("oklch clipped") << oklch << QStringList{"70", "0.5", "150"} << "#00DF00";
    QTest::newRow("oklch lightness 101") << oklch << QStringList{"101", "0", "0"} << "";
    QTest::newRow("oklch negative chroma") << oklch << QStringList{"50", "-0.1", "0"} << "";
    QTest::newRow("oklch large chroma") << oklch << QStringList{"50", "5", "200"} << "#0000FF";
    QTest::newRow("oklch hue 360.5") << oklch << QStringList{"50", "0.1", "360.5"} << "";
    QTest::newRow("cmyk black") << cmyk << QStringList{"0", "0", "0", "100"} << "#000000";
    QTest::newRow("cmyk 100.1") << cmyk << QStringList{"0", "0", "0", "100.1"} << "";
    QTest::newRow("cmyk short") << cmyk << QStringList{"0", "0", "0"} << "";
}

void TestConvertRules::groups()
{
    QFETCH(int, notation);
    QFETCH(QStringList, texts);
    QFETCH(QString, hex);
    const std::optional<RgbColor> color = parseNotation(Notation(notation), texts);
    QCOMPARE(color.has_value(), !hex.isEmpty());
    if (color)
        QCOMPARE(hexString(color->red, color->green, color->blue), hex);
}

void TestConvertRules::rewrittenTexts()
{
    const RgbColor red{1, 0, 0};
    QCOMPARE(notationTexts(Notation::Hex, red), QStringList{"#FF0000"});
    QCOMPARE(notationTexts(Notation::Rgb, red), (QStringList{"255", "0", "0"}));
    QCOMPARE(notationTexts(Notation::Hsl, red), (QStringList{"0", "100", "50"}));
    QCOMPARE(notationTexts(Notation::Oklch, red), (QStringList{"62.8", "0.26", "29"}));
    QCOMPARE(notationTexts(Notation::Cmyk, red), (QStringList{"0", "100", "100", "0"}));
}

// Colors at the edge of precision, as a file or a Convert entry can give
// them: each notation stays in its range and parses back.
void TestConvertRules::edgeColorsStayInRange_data()
{
    QTest::addColumn<double>("red");
    QTest::addColumn<double>("green");
    QTest::addColumn<double>("blue");
    const double belowOne = std::nextafter(1.0, 0.0);
    QTest::newRow("one channel a hair below white") << 1.0 << belowOne << 1.0;
    QTest::newRow("two channels a hair below white") << belowOne << belowOne << 1.0;
    QTest::newRow("a hair above black") << std::numeric_limits<double>::denorm_min() << 0.0 << 0.0;
    QTest::newRow("smallest normal above black") << 0.0 << std::numeric_limits<double>::min() << 0.0;
}

void TestConvertRules::edgeColorsStayInRange()
{
    QFETCH(double, red);
    QFETCH(double, green);
    QFETCH(double, blue);
    const HslComponents hsl = hslComponents(red, green, blue);
    QVERIFY(hsl.hue >= 0 && hsl.hue <= 360);
    QVERIFY(hsl.saturation >= 0 && hsl.saturation <= 100);
    QVERIFY(hsl.lightness >= 0 && hsl.lightness <= 100);
    for (const Notation notation :
         {Notation::Hex, Notation::Rgb, Notation::Hsl, Notation::Oklch, Notation::Cmyk}) {
        const QStringList texts = notationTexts(notation, {red, green, blue});
        QVERIFY2(parseNotation(notation, texts), qPrintable(texts.join(u',')));
    }
}

QTEST_APPLESS_MAIN(TestConvertRules)
#include "tst_convertrules.moc"
