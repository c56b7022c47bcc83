#include "model/ColorFormats.h"

#include <QTest>

#include <cmath>

Q_DECLARE_METATYPE(std::optional<RgbColor>)

class TestColorFormats : public QObject
{
    Q_OBJECT

private slots:
    void notations_data();
    void notations();
    void roundsHalvesAwayFromZero_data();
    void roundsHalvesAwayFromZero();
    void cmyk_data();
    void cmyk();
    void fixedFormatFollowsPrintf_data();
    void fixedFormatFollowsPrintf();
    void parseHex_data();
    void parseHex();
    void everyByteSurvivesFormatAndParse();
    void hslToRgb_data();
    void hslToRgb();
    void oklchRoundTrip_data();
    void oklchRoundTrip();
    void oklchClipsLargeChroma_data();
    void oklchClipsLargeChroma();
    void cmykToRgb_data();
    void cmykToRgb();
};

void TestColorFormats::notations_data()
{
    QTest::addColumn<double>("r");
    QTest::addColumn<double>("g");
    QTest::addColumn<double>("b");
    QTest::addColumn<QStringList>("texts"); // hex, rgb, hsl, oklch
    const auto row = [](const char *name, double r, double g, double b, const QStringList &texts) {
        QTest::newRow(name) << r << g << b << texts;
    };
    // OKLCH figures are the published CSS Color 4 values, rounded as shown.
    row("black", 0, 0, 0, {"#000000", "rgb(0, 0, 0)", "hsl(0, 0%, 0%)", "oklch(0.0% 0.00 0)"});
    row("white", 1, 1, 1, {"#FFFFFF", "rgb(255, 255, 255)", "hsl(0, 0%, 100%)", "oklch(100.0% 0.00 90)"});
    row("red", 1, 0, 0, {"#FF0000", "rgb(255, 0, 0)", "hsl(0, 100%, 50%)", "oklch(62.8% 0.26 29)"});
    row("orange", 1, 128 / 255.0, 0,
        {"#FF8000", "rgb(255, 128, 0)", "hsl(30, 100%, 50%)", "oklch(73.2% 0.19 53)"});
    row("css green", 0, 128 / 255.0, 0,
        {"#008000", "rgb(0, 128, 0)", "hsl(120, 100%, 25%)", "oklch(52.0% 0.18 142)"});
    row("blue", 0, 0, 1, {"#0000FF", "rgb(0, 0, 255)", "hsl(240, 100%, 50%)", "oklch(45.2% 0.31 264)"});
    row("half grey", 0.5, 0.5, 0.5,
        {"#808080", "rgb(128, 128, 128)", "hsl(0, 0%, 50%)", "oklch(59.8% 0.00 90)"});
    row("above one", 1.2, 0, 0, {"#1320000", "rgb(306, 0, 0)", "hsl(0, 150%, 60%)", "oklch(72.2% 0.30 29)"});
    // h = 60 * (-0.004) + 360 = 359.76
    row("hue just under 360", 1, 0, 0.004, {"#FF0001", "rgb(255, 0, 1)", "hsl(360, 100%, 50%)", {}});
}

void TestColorFormats::notations()
{
    QFETCH(double, r);
    QFETCH(double, g);
    QFETCH(double, b);
    QFETCH(QStringList, texts);
    const QStringList shown{hexString(r, g, b), rgbString(r, g, b), hslString(r, g, b), oklchString(r, g, b)};
    for (qsizetype i = 0; i < texts.size(); ++i) {
        if (!texts.at(i).isEmpty())
            QCOMPARE(shown.at(i), texts.at(i));
    }
}

void TestColorFormats::roundsHalvesAwayFromZero_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<qint64>("rounded");
    QTest::newRow("2.5") << 2.5 << qint64(3);
    QTest::newRow("-2.5") << -2.5 << qint64(-3);
    QTest::newRow("127.5") << 0.5 * 255 << qint64(128);
    QTest::newRow("2.4999") << 2.4999 << qint64(2);
    QTest::newRow("nan") << std::nan("") << qint64(0);
    QTest::newRow("huge") << 1e300 << std::numeric_limits<qint64>::max();
    QTest::newRow("-huge") << -1e300 << std::numeric_limits<qint64>::min();
}

void TestColorFormats::roundsHalvesAwayFromZero()
{
    QFETCH(double, value);
    QFETCH(qint64, rounded);
    QCOMPARE(roundHalfAwayFromZero(value), rounded);
}

void TestColorFormats::cmyk_data()
{
    QTest::addColumn<double>("r");
    QTest::addColumn<double>("g");
    QTest::addColumn<double>("b");
    QTest::addColumn<QList<qint64>>("cmyk");
    QTest::addColumn<QString>("text");
    QTest::newRow("black") << 0.0 << 0.0 << 0.0 << QList<qint64>{0, 0, 0, 100} << "cmyk(0%, 0%, 0%, 100%)";
    QTest::newRow("white") << 1.0 << 1.0 << 1.0 << QList<qint64>{0, 0, 0, 0} << "cmyk(0%, 0%, 0%, 0%)";
    QTest::newRow("red") << 1.0 << 0.0 << 0.0 << QList<qint64>{0, 100, 100, 0} << "cmyk(0%, 100%, 100%, 0%)";
    QTest::newRow("dark orange") << 0.5 << 0.25 << 0.0 << QList<qint64>{0, 50, 100, 50}
                                 << "cmyk(0%, 50%, 100%, 50%)";
}

void TestColorFormats::cmyk()
{
    QFETCH(double, r);
    QFETCH(double, g);
    QFETCH(double, b);
    QFETCH(QList<qint64>, cmyk);
    QFETCH(QString, text);
    const CmykComponents c = cmykComponents(r, g, b);
    QCOMPARE((QList<qint64>{c.cyan, c.magenta, c.yellow, c.black}), cmyk);
    QCOMPARE(cmykString(r, g, b), text);
}

void TestColorFormats::fixedFormatFollowsPrintf_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("text");
    // Exact binary halves go to the even digit, as printf does.
    QTest::newRow("0.125") << 0.125 << 2 << "0.12";
    QTest::newRow("0.375") << 0.375 << 2 << "0.38";
    QTest::newRow("2.5") << 2.5 << 0 << "2";
    QTest::newRow("3.5") << 3.5 << 0 << "4";
    // 0.15 is stored just below the half, so it goes down.
    QTest::newRow("0.15") << 0.15 << 1 << "0.1";
    QTest::newRow("359.6") << 359.6 << 0 << "360";
    QTest::newRow("21") << 21.0 << 2 << "21.00";
}

void TestColorFormats::fixedFormatFollowsPrintf()
{
    QFETCH(double, value);
    QFETCH(int, decimals);
    QFETCH(QString, text);
    QCOMPARE(formatFixed(value, decimals), text);
}

void TestColorFormats::parseHex_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<std::optional<RgbColor>>("color");
    const auto rgb = [](int v) {
        return std::optional<RgbColor>(
            RgbColor{((v >> 16) & 255) / 255.0, ((v >> 8) & 255) / 255.0, (v & 255) / 255.0});
    };
    const std::optional<RgbColor> none;

    QTest::newRow("blanks around") << " #ff8000\n" << rgb(0xFF8000);
    QTest::newRow("no hash, lower") << "ff0000" << rgb(0xFF0000);
    QTest::newRow("upper") << "#ABCDEF" << rgb(0xABCDEF);
    QTest::newRow("0x prefix") << "0x12AB" << rgb(0x0012AB);
    QTest::newRow("0X prefix") << "#0X12ab" << rgb(0x0012AB);
    QTest::newRow("trailing junk") << "12345G" << rgb(0x012345);
    QTest::newRow("lone zero") << "0xZZZZ" << rgb(0);
    QTest::newRow("inner blank") << "12 456" << rgb(0x12);
    QTest::newRow("blank after hash") << "# 12345" << rgb(0x012345);
    QTest::newRow("three digits") << "FFF" << none;
    QTest::newRow("eight digits") << "#FFFFFFFF" << none;
    QTest::newRow("empty") << "" << none;
    QTest::newRow("only hash") << "#" << none;
    QTest::newRow("not hex") << "GGGGGG" << none;
    QTest::newRow("two hashes") << "##FFFFF" << none;
    QTest::newRow("sign") << "-12345" << none;
    QTest::newRow("seven") << "#1234567" << none;
    // Six user-perceived characters, seven code units: the length check
    // counts characters, the scanner reads digits up to the accent.
    QTest::newRow("combining accent") << QString::fromUtf8("12345e\u0301") << rgb(0x12345E);
}

void TestColorFormats::parseHex()
{
    QFETCH(QString, text);
    QFETCH(std::optional<RgbColor>, color);
    const std::optional<RgbColor> parsed = ::parseHex(text);
    QCOMPARE(parsed.has_value(), color.has_value());
    if (color)
        QVERIFY(*parsed == *color);
}

void TestColorFormats::everyByteSurvivesFormatAndParse()
{
    for (int v = 0; v < 256; ++v) {
        for (int channel = 0; channel < 3; ++channel) {
            double c[3] = {0.2, 0.6, 1.0};
            c[channel] = v / 255.0;
            const QString hex = hexString(c[0], c[1], c[2]);
            const std::optional<RgbColor> parsed = ::parseHex(hex);
            QVERIFY2(parsed, qPrintable(hex));
            const double back[3] = {parsed->red, parsed->green, parsed->blue};
            QCOMPARE(back[channel], v / 255.0);
            QCOMPARE(hexString(parsed->red, parsed->green, parsed->blue), hex);
        }
    }
}

void TestColorFormats::hslToRgb_data()
{
    QTest::addColumn<double>("h");
    QTest::addColumn<double>("s");
    QTest::addColumn<double>("l");
    QTest::addColumn<QString>("hex");
    QTest::newRow("red") << 0.0 << 100.0 << 50.0 << "#FF0000";
    QTest::newRow("red at 360") << 360.0 << 100.0 << 50.0 << "#FF0000";
    QTest::newRow("green") << 120.0 << 100.0 << 50.0 << "#00FF00";
    QTest::newRow("blue") << 240.0 << 100.0 << 50.0 << "#0000FF";
    QTest::newRow("orange") << 30.0 << 100.0 << 50.0 << "#FF8000";
    QTest::newRow("grey") << 200.0 << 0.0 << 25.0 << "#404040";
    QTest::newRow("black") << 0.0 << 100.0 << 0.0 << "#000000";
    QTest::newRow("white") << 0.0 << 100.0 << 100.0 << "#FFFFFF";
}

void TestColorFormats::hslToRgb()
{
    QFETCH(double, h);
    QFETCH(double, s);
    QFETCH(double, l);
    const RgbColor c = hslToRGB(h, s, l);
    QFETCH(QString, hex);
    QCOMPARE(hexString(c.red, c.green, c.blue), hex);
    if (s == 0) {
        QCOMPARE(c.red, l / 100);
        QCOMPARE(c.green, l / 100);
        QCOMPARE(c.blue, l / 100);
    }
}

void TestColorFormats::oklchRoundTrip_data()
{
    QTest::addColumn<QString>("hex");
    for (const char *hex : {"#FF8000", "#336699", "#0A0B0C", "#7F3FBF", "#00FF00", "#FFFFFF"})
        QTest::newRow(hex) << QString::fromLatin1(hex);
}

void TestColorFormats::oklchRoundTrip()
{
    QFETCH(QString, hex);
    const RgbColor in = *::parseHex(hex);
    const OklchComponents lch = oklchComponents(in.red, in.green, in.blue);
    const RgbColor out = oklchToRGB(lch.lightness, lch.chroma, lch.hue);
    QVERIFY(std::fabs(out.red - in.red) < 1e-6);
    QVERIFY(std::fabs(out.green - in.green) < 1e-6);
    QVERIFY(std::fabs(out.blue - in.blue) < 1e-6);
    QCOMPARE(hexString(out.red, out.green, out.blue), hex);
}

void TestColorFormats::oklchClipsLargeChroma_data()
{
    QTest::addColumn<double>("chroma");
    QTest::newRow("1000") << 1000.0;
    QTest::newRow("1e308") << 1e308;
}

void TestColorFormats::oklchClipsLargeChroma()
{
    // Out of gamut by a little: clipped channel by channel, hue not kept.
    const RgbColor near = oklchToRGB(0.7, 0.5, 150);
    QCOMPARE(near.red, 0.0);
    QCOMPARE(near.blue, 0.0);
    QVERIFY(near.green > 0.8 && near.green < 1.0);

    QFETCH(double, chroma);
    const RgbColor c = oklchToRGB(0.7, chroma, 150);
    for (double channel : {c.red, c.green, c.blue})
        QVERIFY2(channel == 0.0 || channel == 1.0, qPrintable(QString::number(channel)));
}

void TestColorFormats::cmykToRgb_data()
{
    QTest::addColumn<QList<double>>("cmyk");
    QTest::addColumn<QString>("hex");
    QTest::newRow("black whatever cmy") << QList<double>{30, 60, 90, 100} << "#000000";
    QTest::newRow("white") << QList<double>{0, 0, 0, 0} << "#FFFFFF";
    QTest::newRow("red") << QList<double>{0, 100, 100, 0} << "#FF0000";
    QTest::newRow("half") << QList<double>{0, 50, 100, 50} << "#804000";
}

void TestColorFormats::cmykToRgb()
{
    QFETCH(QList<double>, cmyk);
    const RgbColor c = cmykToRGB(cmyk[0], cmyk[1], cmyk[2], cmyk[3]);
    QFETCH(QString, hex);
    QCOMPARE(hexString(c.red, c.green, c.blue), hex);
}

QTEST_APPLESS_MAIN(TestColorFormats)
#include "tst_colorformats.moc"
