// What the Contrast tab adds below the WCAG grade: APCA, the nearest
// passing colors, the pair as seen with color-vision deficiencies, and the
// color texts the contrast command reads.
#include "model/Apca.h"
#include "model/ColorVision.h"
#include "model/Contrast.h"
#include "model/NearestPassingColor.h"
#include "model/Notation.h"

#include <QTest>

namespace {

RgbColor rgb(const QString &hex)
{
    return *parseHex(hex);
}

} // namespace

class TestContrastExtras : public QObject
{
    Q_OBJECT

private slots:
    void apca_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("background");
        QTest::addColumn<QString>("lc");
        QTest::addColumn<QString>("use");
        const auto row = [](const char *name, const char *text, const char *background, const char *lc,
                            const char *use) { QTest::newRow(name) << text << background << lc << use; };
        // Published pairs, then grays either side of each use's threshold.
        row("black on white", "#000000", "#FFFFFF", "Lc 106.0", "Preferred body text");
        row("white on black", "#FFFFFF", "#000000", "Lc -107.9", "Preferred body text");
        row("#888 on white", "#888888", "#FFFFFF", "Lc 63.1", "Content text");
        row("white on #888", "#FFFFFF", "#888888", "Lc -68.5", "Content text");
        row("color pair", "#123456", "#FEDCBA", "Lc 81.3", "Body text");
        row("90 reached", "#4A4A4A", "#FFFFFF", "Lc 90.3", "Preferred body text");
        row("90 missed", "#4B4B4B", "#FFFFFF", "Lc 89.9", "Body text");
        row("75 missed", "#6F6F6F", "#FFFFFF", "Lc 74.8", "Content text");
        row("60 missed", "#8F8F8F", "#FFFFFF", "Lc 59.6", "Large text");
        row("59.96, graded as shown", "#8A908A", "#FFFFFF", "Lc 60.0", "Content text");
        row("-60 reached", "#B1B1B1", "#000000", "Lc -60.1", "Content text");
        row("-45 missed", "#949494", "#000000", "Lc -44.6", "Spot text");
        row("30 reached", "#C7C7C7", "#FFFFFF", "Lc 30.1", "Spot text");
        row("15 reached", "#E1E1E1", "#FFFFFF", "Lc 15.2", "Non-text");
        row("15 missed", "#E2E2E2", "#FFFFFF", "Lc 14.7", "Not readable");
        // Near black the soft clamp leaves too little to tell apart.
        row("black on #333", "#000000", "#333333", "Lc 0.0", "Not readable");
        row("almost equal", "#777777", "#787878", "Lc 0.0", "Not readable");
    }
    void apca()
    {
        QFETCH(QString, text);
        QFETCH(QString, background);
        const double lc = Apca::contrast(rgb(text), rgb(background));
        QTEST(Apca::text(lc), "lc");
        QTEST(Apca::use(lc), "use");
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
        QFETCH(QString, expected);
        const std::optional<PassingColor> found = ::nearestPassingColor(rgb(color), rgb(other), level);
        QCOMPARE(found ? found->hex : QString(), expected);
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

QTEST_GUILESS_MAIN(TestContrastExtras)
#include "tst_contrastextras.moc"
