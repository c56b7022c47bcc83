// The five notations: shown from a color, and typed back into one; and the
// contrast of two colors: WCAG's, APCA, the nearest passing colors and the
// pair as seen with color-vision deficiencies.
#include "model/Apca.h"
#include "model/ColorFormats.h"
#include "model/ColorVision.h"
#include "model/Contrast.h"
#include "model/NearestPassingColor.h"
#include "model/Notation.h"
#include "model/NumberParsing.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

RgbColor rgb(const QString &hex)
{
    return *parseHex(hex);
}

// The contrast tables' columns: a pair of colors, the figure as shown and
// its grade (WCAG's level, or APCA's use).
void pairColumns()
{
    QTest::addColumn<QString>("foreground");
    QTest::addColumn<QString>("background");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("grade");
}

void pairRow(const char *name, const char *foreground, const char *background, const char *shown,
             const char *grade)
{
    QTest::newRow(name) << foreground << background << shown << grade;
}

} // namespace

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
        const std::optional<qint64> w = parseWholeNumber(text);
        QTEST(w ? QString::number(*w) : QString(), "whole");
        const std::optional<double> d = parseDecimalNumber(text);
        QTEST(d ? QString::number(*d) : QString(), "decimal");
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
        // What a group's fields are rewritten to.
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
        pairColumns();
        pairRow("black on white", "#000000", "#FFFFFF", "21.00", "AAA");
        pairRow("swapped", "#FFFFFF", "#000000", "21.00", "AAA");
        pairRow("equal", "#3366CC", "#3366cc", "1.00", "Fail");
        pairRow("invalid text color is black", "nonsense", "#FFFFFF", "21.00", "AAA");
        pairRow("invalid background is white", "#FFFFFF", "", "1.00", "Fail");
        // Reference figures from the WCAG contrast checker.
        pairRow("grey 777", "#777777", "#FFFFFF", "4.48", "AA Large");
        pairRow("grey 767676", "#767676", "#FFFFFF", "4.54", "AA");
        pairRow("blue on white", "#0000FF", "#FFFFFF", "8.59", "AAA");
    }
    void ratio()
    {
        QFETCH(QString, foreground);
        QFETCH(QString, background);
        const double ratio = contrastRatio(foreground, background);
        QTEST(contrastRatioText(ratio), "shown");
        QTEST(wcagLabel(wcagLevel(ratio)), "grade");
    }

    void levelBoundsAndLuminance()
    {
        const QList<std::pair<double, const char *>> bounds = {
            {7, "AAA"}, {6.99, "AA"}, {4.5, "AA"}, {4.49, "AA Large"}, {3, "AA Large"}, {2.99, "Fail"}};
        for (const auto &[ratio, label] : bounds)
            QCOMPARE(wcagLabel(wcagLevel(ratio)), QString::fromLatin1(label));
        // The luminance's linear branch reaches up to its threshold.
        QCOMPARE(relativeLuminance(0.03928, 0, 0), 0.2126 * (0.03928 / 12.92));
        QVERIFY(relativeLuminance(0.03929, 0, 0) > 0.2126 * (0.03929 / 12.92) * 0.99);
        QCOMPARE(relativeLuminance(1, 1, 1), 1.0);
    }

    // Below the WCAG grade: APCA, the nearest passing colors, the pair as
    // seen with color-vision deficiencies, and the color texts the contrast
    // command reads.
    void apca_data()
    {
        pairColumns();
        // Published pairs, then grays either side of each use's threshold.
        pairRow("black on white", "#000000", "#FFFFFF", "Lc 106.0", "Preferred body text");
        pairRow("white on black", "#FFFFFF", "#000000", "Lc -107.9", "Preferred body text");
        pairRow("#888 on white", "#888888", "#FFFFFF", "Lc 63.1", "Content text");
        pairRow("white on #888", "#FFFFFF", "#888888", "Lc -68.5", "Content text");
        pairRow("color pair", "#123456", "#FEDCBA", "Lc 81.3", "Body text");
        pairRow("90 reached", "#4A4A4A", "#FFFFFF", "Lc 90.3", "Preferred body text");
        pairRow("90 missed", "#4B4B4B", "#FFFFFF", "Lc 89.9", "Body text");
        pairRow("75 missed", "#6F6F6F", "#FFFFFF", "Lc 74.8", "Content text");
        pairRow("60 missed", "#8F8F8F", "#FFFFFF", "Lc 59.6", "Large text");
        pairRow("59.96, graded as shown", "#8A908A", "#FFFFFF", "Lc 60.0", "Content text");
        pairRow("-60 reached", "#B1B1B1", "#000000", "Lc -60.1", "Content text");
        pairRow("-45 missed", "#949494", "#000000", "Lc -44.6", "Spot text");
        pairRow("30 reached", "#C7C7C7", "#FFFFFF", "Lc 30.1", "Spot text");
        pairRow("15 reached", "#E1E1E1", "#FFFFFF", "Lc 15.2", "Non-text");
        pairRow("15 missed", "#E2E2E2", "#FFFFFF", "Lc 14.7", "Not readable");
        // Near black the soft clamp leaves too little to tell apart.
        pairRow("black on #333", "#000000", "#333333", "Lc 0.0", "Not readable");
        pairRow("almost equal", "#777777", "#787878", "Lc 0.0", "Not readable");
    }
    void apca()
    {
        QFETCH(QString, foreground);
        QFETCH(QString, background);
        const double lc = Apca::contrast(rgb(foreground), rgb(background));
        QTEST(Apca::text(lc), "shown");
        QTEST(Apca::use(lc), "grade");
    }

    void nearestPassingColor_data()
    {
        QTest::addColumn<QString>("color");
        QTest::addColumn<QString>("other");
        QTest::addColumn<double>("level");
        QTest::addColumn<QString>("expected"); // "" where no lightness reaches it
        const auto row = [](const char *name, const char *color, const char *other, double level,
                            const char *expected) {
            QTest::newRow(name) << color << other << level << expected;
        };
        // The lightest grays that pass on white are well known.
        row("gray text, AA", "#888888", "#FFFFFF", 4.5, "#767676");
        row("gray text, AAA", "#888888", "#FFFFFF", 7.0, "#595959");
        // Both ways reach it: the nearer wins.
        row("nearer darker", "#777777", "#777777", 3.0, "#2E2E2E");
        row("nearer lighter", "#808080", "#777777", 3.0, "#D4D4D4");
        row("white background, AAA", "#FFFFFF", "#888888", 7.0, "");
        row("mid gray, AAA", "#777777", "#808080", 7.0, "");
        row("blue text, AA", "#3366CC", "#224488", 4.5, "#8CB5FF");
        row("red text, AAA", "#FF0000", "#00FF00", 7.0, "#900000");
    }
    void nearestPassingColor()
    {
        QFETCH(QString, color);
        QFETCH(QString, other);
        QFETCH(double, level);
        const std::optional<PassingColor> found = ::nearestPassingColor(rgb(color), rgb(other), level);
        QTEST(found ? found->hex : QString(), "expected");
        if (!found)
            return;
        QVERIFY(contrastRatio(found->hex, other) >= level);
        // Hue kept, chroma never raised.
        const RgbColor from = rgb(color), to = rgb(found->hex);
        const OklchComponents before = oklchComponents(from.red, from.green, from.blue);
        const OklchComponents after = oklchComponents(to.red, to.green, to.blue);
        if (before.chroma > 0.02)
            QVERIFY2(std::abs(after.hue - before.hue) < 3, qPrintable(QString::number(after.hue)));
        QVERIFY(after.chroma <= before.chroma + 0.01);
        // A step of lightness back towards the color does not pass.
        const double step = after.lightness > before.lightness ? -0.006 : 0.006;
        const RgbColor closer = oklchToRGB(after.lightness + step, after.chroma, after.hue);
        QVERIFY(contrastRatio(hexString(closer.red, closer.green, closer.blue), other) < level);
    }

    void colorVision_data()
    {
        QTest::addColumn<QString>("color");
        QTest::addColumn<QStringList>("seen"); // protanopia, deuteranopia, tritanopia, achromatopsia
        QTest::newRow("red") << "#FF0000" << QStringList{"#6D5F00", "#A39000", "#FF000F", "#7F7F7F"};
        QTest::newRow("green") << "#00FF00" << QStringList{"#FFE500", "#EFD63A", "#00F7D9", "#DCDCDC"};
        QTest::newRow("blue") << "#0000FF" << QStringList{"#0059FF", "#003DFB", "#006B96", "#4C4C4C"};
    }
    void colorVision()
    {
        QFETCH(QString, color);
        QStringList seen;
        for (const ColorVision::Deficiency deficiency : ColorVision::all) {
            const RgbColor c = ColorVision::simulate(deficiency, rgb(color));
            seen.append(hexString(c.red, c.green, c.blue));
        }
        QTEST(seen, "seen");
    }

    void colorTexts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("hex"); // "" where it is not a color
        const auto row = [](const char *name, const char *text, const char *hex) {
            QTest::newRow(name) << text << hex;
        };
        row("hex", " #ff8000 ", "#FF8000");
        row("rgb", "rgb(255, 128, 0)", "#FF8000");
        row("hsl", "hsl(30, 100%, 50%)", "#FF8000");
        row("oklch", "oklch(62.8% 0.26 29)", "#FF0000");
        row("upper case", "RGB(0,0,255)", "#0000FF");
        row("three digits", "#abc", "");
        row("unknown function", "lab(50 0 0)", "");
    }
    void colorTexts()
    {
        QFETCH(QString, text);
        const std::optional<RgbColor> color = Notations::parseText(text);
        QTEST(color ? hexString(color->red, color->green, color->blue) : QString(), "hex");
    }
};

QTEST_APPLESS_MAIN(TestColorFormats)
#include "tst_colorformats.moc"
