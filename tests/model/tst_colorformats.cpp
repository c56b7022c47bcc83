// The five notations: shown from a color, and typed back into one; and the
// contrast of two colors.
#include "model/ColorFormats.h"
#include "model/Contrast.h"
#include "model/Notation.h"
#include "model/NumberParsing.h"

#include <QTest>

#include <cmath>
#include <limits>

class TestColorFormats : public QObject
{
    Q_OBJECT

private slots:
    void notations_data()
    {
        QTest::addColumn<QList<double>>("rgb");
        QTest::addColumn<QStringList>("texts"); // hex, rgb, hsl, oklch, cmyk; empty: not checked
        const auto row = [](const char *name, QList<double> rgb, const QStringList &texts) {
            QTest::newRow(name) << rgb << texts;
        };
        // OKLCH figures are the published CSS Color 4 values, rounded as shown.
        row("black", {0, 0, 0},
            {"#000000", "", "hsl(0, 0%, 0%)", "oklch(0.0% 0.00 0)", "cmyk(0%, 0%, 0%, 100%)"});
        row("white", {1, 1, 1},
            {"#FFFFFF", "", "hsl(0, 0%, 100%)", "oklch(100.0% 0.00 90)", "cmyk(0%, 0%, 0%, 0%)"});
        row("red", {1, 0, 0},
            {"#FF0000", "rgb(255, 0, 0)", "hsl(0, 100%, 50%)", "oklch(62.8% 0.26 29)",
             "cmyk(0%, 100%, 100%, 0%)"});
        row("orange", {1, 128 / 255.0, 0},
            {"#FF8000", "rgb(255, 128, 0)", "hsl(30, 100%, 50%)", "oklch(73.2% 0.19 53)"});
        row("css green", {0, 128 / 255.0, 0},
            {"#008000", "", "hsl(120, 100%, 25%)", "oklch(52.0% 0.18 142)"});
        row("blue", {0, 0, 1}, {"", "", "hsl(240, 100%, 50%)", "oklch(45.2% 0.31 264)"});
        row("half grey", {0.5, 0.5, 0.5}, {"#808080", "rgb(128, 128, 128)", "", "oklch(59.8% 0.00 90)"});
        row("dark orange", {0.5, 0.25, 0}, {"", "", "", "", "cmyk(0%, 50%, 100%, 50%)"});
        row("above one", {1.2, 0, 0},
            {"#1320000", "rgb(306, 0, 0)", "hsl(0, 150%, 60%)", "oklch(72.2% 0.30 29)"});
        row("hue just under 360", {1, 0, 0.004}, {"#FF0001", "", "hsl(360, 100%, 50%)"}); // 359.76
    }
    void notations()
    {
        QFETCH(QList<double>, rgb);
        QFETCH(QStringList, texts);
        const double r = rgb[0], g = rgb[1], b = rgb[2];
        const QStringList shown{hexString(r, g, b), rgbString(r, g, b), hslString(r, g, b),
                                oklchString(r, g, b), cmykString(r, g, b)};
        for (qsizetype i = 0; i < texts.size(); ++i)
            if (!texts[i].isEmpty())
                QCOMPARE(shown[i], texts[i]);
    }

    // Whole numbers round halves away from zero; fixed decimals go as printf
    // does, exact binary halves to the even digit.
    void rounding()
    {
        const QList<std::tuple<double, int, QString>> rows = {
            {2.5, -1, "3"},
            {-2.5, -1, "-3"},
            {2.4999, -1, "2"},
            {std::nan(""), -1, "0"},
            {1e300, -1, QString::number(std::numeric_limits<qint64>::max())},
            {0.125, 2, "0.12"},
            {0.375, 2, "0.38"},
            {2.5, 0, "2"},
            {0.15, 1, "0.1"},
            {21, 2, "21.00"}};
        for (const auto &[value, decimals, text] : rows)
            QCOMPARE(decimals < 0 ? QString::number(roundHalfAwayFromZero(value))
                                  : formatFixed(value, decimals),
                     text);
    }

    void parseHex_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("rgb"); // -1: refused
        const QList<std::pair<QString, int>> rows = {
            {" #ff8000\n", 0xFF8000},
            {"#0X12ab", 0x0012AB},
            {"12345G", 0x012345},
            {"0xZZZZ", 0},
            {"12 456", 0x12},
            {"# 12345", 0x012345},
            {"FFF", -1},
            {"#1234567", -1},
            {"#", -1},
            {"GGGGGG", -1},
            {"##FFFFF", -1},
            {"-12345", -1},
            // Six user-perceived characters, seven code units: the length
            // check counts characters, the scanner reads up to the accent.
            {QString::fromUtf8("12345e\u0301"), 0x12345E}};
        for (const auto &[text, rgb] : rows)
            QTest::newRow(qPrintable(text)) << text << rgb;
    }
    void parseHex()
    {
        QFETCH(QString, text);
        QFETCH(int, rgb);
        const std::optional<RgbColor> parsed = ::parseHex(text);
        QCOMPARE(parsed.has_value(), rgb >= 0);
        if (parsed)
            QVERIFY(*parsed
                    == (RgbColor{(rgb >> 16) / 255.0, ((rgb >> 8) & 255) / 255.0, (rgb & 255) / 255.0}));
    }

    void everyByteAndOklchRoundTrip()
    {
        for (int v = 0; v < 256; ++v) {
            const RgbColor in{v / 255.0, 0.6, (255 - v) / 255.0};
            const QString hex = hexString(in.red, in.green, in.blue);
            QVERIFY2(::parseHex(hex) == in, qPrintable(hex));
            const OklchComponents lch = oklchComponents(in.red, in.green, in.blue);
            const RgbColor out = oklchToRGB(lch.lightness, lch.chroma, lch.hue);
            QVERIFY(std::fabs(out.red - in.red) + std::fabs(out.green - in.green)
                        + std::fabs(out.blue - in.blue)
                    < 1e-6);
        }
    }

    void numbers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("whole"); // parsed back as text; empty: refused
        QTest::addColumn<QString>("decimal");
        const QList<std::tuple<QString, const char *, const char *>> rows = {
            {"+12", "12", "12"},
            {"007", "7", "7"},
            {"-0.25", "", "-0.25"},
            {".5", "", "0.5"},
            {"1e2", "", "100"},
            {" 1", "", ""},
            {"1 ", "", ""},
            {QString::fromUtf8("5\u00a0"), "", ""},
            {"", "", ""},
            {"-", "", ""},
            {"0,5", "", ""},
            {"5px", "", ""},
            {"inf", "", "inf"},
            {"1e999", "", "inf"},
            {QString::fromUtf8("\u0661"), "", ""},
            {"99999999999999999999", "", "1e+20"}};
        for (const auto &[text, whole, decimal] : rows)
            QTest::newRow(qPrintable('"' + text + '"')) << text << whole << decimal;
    }
    void numbers()
    {
        QFETCH(QString, text);
        QFETCH(QString, whole);
        QFETCH(QString, decimal);
        const std::optional<qint64> w = parseWholeNumber(text);
        QCOMPARE(w ? QString::number(*w) : QString(), whole);
        const std::optional<double> d = parseDecimalNumber(text);
        QCOMPARE(d ? QString::number(*d) : QString(), decimal);
    }

    // "notation texts... = hex", notations in Notation's order, the hex empty
    // when the group is refused.
    void groups()
    {
        const QString rows =
            "0 ff0000 = #FF0000; 0 fff =; 1 255 128 0 = #FF8000; 1 256 0 0 =; 1 12.5 0 0 =; "
            "1 -1 0 0 =; 1 +0 -0 0 = #000000; 2 360 100 50 = #FF0000; 2 361 100 50 =; "
            "2 nan 100 50 =; 2 120.50 100 50 = #00FF02; 2 240 100 50 = #0000FF; "
            "2 30 100 50 = #FF8000; 2 200 0 25 = #404040; 3 70 0.5 150 = #00DF00; 3 101 0 0 =; "
            "3 50 -0.1 0 =; 3 50 5 200 = #0000FF; 3 70 1e308 150 = #00FF00; 3 50 0.1 360.5 =; "
            "4 30 60 90 100 = #000000; 4 0 50 100 50 = #804000; 4 0 0 0 100.1 =; 4 0 0 0 =";
        for (const QString &row : rows.split(QStringLiteral("; "))) {
            const QStringList sides = row.split(u'=');
            QStringList texts = sides[0].split(u' ', Qt::SkipEmptyParts);
            const Notation notation = Notation(texts.takeFirst().toInt());
            const std::optional<RgbColor> color = Notations::parseFields(notation, texts);
            QVERIFY2((color ? u' ' + hexString(color->red, color->green, color->blue) : QString())
                         == sides[1],
                     qPrintable(row));
        }
    }

    void rewrittenTexts()
    {
        const RgbColor red{1, 0, 0};
        QCOMPARE(Notations::fieldTexts(Notation::Oklch, red), (QStringList{"62.8", "0.26", "29"}));
        QCOMPARE(Notations::fieldTexts(Notation::Cmyk, red), (QStringList{"0", "100", "100", "0"}));
    }

    // Colors at the edge of precision: each notation stays in range and parses back.
    void edgeColorsStayInRange()
    {
        const double belowOne = std::nextafter(1.0, 0.0), tiny = std::numeric_limits<double>::denorm_min();
        for (const RgbColor c :
             {RgbColor{1, belowOne, 1}, RgbColor{belowOne, belowOne, 1}, RgbColor{tiny, 0, 0}}) {
            const HslComponents hsl = hslComponents(c.red, c.green, c.blue);
            QVERIFY(hsl.hue >= 0 && hsl.hue <= 360 && hsl.saturation >= 0 && hsl.saturation <= 100);
            QVERIFY(hsl.lightness >= 0 && hsl.lightness <= 100);
            for (const Notation n :
                 {Notation::Hex, Notation::Rgb, Notation::Hsl, Notation::Oklch, Notation::Cmyk})
                QVERIFY2(Notations::parseFields(n, Notations::fieldTexts(n, c)),
                         qPrintable(Notations::fieldTexts(n, c).join(',')));
        }
    }

    // WCAG 2 contrast: the ratio as shown and its grade.
    void ratio_data()
    {
        QTest::addColumn<QString>("hex1");
        QTest::addColumn<QString>("hex2");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("label");
        const auto row = [](const char *name, const char *hex1, const char *hex2, const char *text,
                            const char *label) { QTest::newRow(name) << hex1 << hex2 << text << label; };
        row("black on white", "#000000", "#FFFFFF", "21.00", "AAA");
        row("swapped", "#FFFFFF", "#000000", "21.00", "AAA");
        row("equal", "#3366CC", "#3366cc", "1.00", "Fail");
        row("invalid text color is black", "nonsense", "#FFFFFF", "21.00", "AAA");
        row("invalid background is white", "#FFFFFF", "", "1.00", "Fail");
        // Reference figures from the WCAG contrast checker.
        row("grey 777", "#777777", "#FFFFFF", "4.48", "AA Large");
        row("grey 767676", "#767676", "#FFFFFF", "4.54", "AA");
        row("blue on white", "#0000FF", "#FFFFFF", "8.59", "AAA");
    }
    void ratio()
    {
        QFETCH(QString, hex1);
        QFETCH(QString, hex2);
        QFETCH(QString, text);
        QFETCH(QString, label);
        const double ratio = contrastRatio(hex1, hex2);
        QCOMPARE(contrastRatioText(ratio), text);
        QCOMPARE(wcagLabel(wcagLevel(ratio)), label);
    }

    void levelBounds()
    {
        const QList<std::pair<double, const char *>> bounds = {
            {7, "AAA"}, {6.99, "AA"}, {4.5, "AA"}, {4.49, "AA Large"}, {3, "AA Large"}, {2.99, "Fail"}};
        for (const auto &[ratio, label] : bounds)
            QCOMPARE(wcagLabel(wcagLevel(ratio)), QString::fromLatin1(label));
    }

    void luminanceThresholdTakesLinearBranch()
    {
        QCOMPARE(relativeLuminance(0.03928, 0, 0), 0.2126 * (0.03928 / 12.92));
        QVERIFY(relativeLuminance(0.03929, 0, 0) > 0.2126 * (0.03929 / 12.92) * 0.99);
        QCOMPARE(relativeLuminance(1, 1, 1), 1.0);
    }
};

QTEST_APPLESS_MAIN(TestColorFormats)
#include "tst_colorformats.moc"
