#include "model/Contrast.h"

#include <QTest>

class TestContrast : public QObject
{
    Q_OBJECT

private slots:
    void ratio_data();
    void ratio();
    void levels_data();
    void levels();
    void luminanceThresholdTakesLinearBranch();
    void levelColors();
};

void TestContrast::ratio_data()
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
    row("both invalid", "x", "y", "21.00", "AAA");
    // Reference figures from the WCAG contrast checker.
    row("grey 777", "#777777", "#FFFFFF", "4.48", "AA Large");
    row("grey 767676", "#767676", "#FFFFFF", "4.54", "AA");
    row("blue on white", "#0000FF", "#FFFFFF", "8.59", "AAA");
}

void TestContrast::ratio()
{
    QFETCH(QString, hex1);
    QFETCH(QString, hex2);
    const double ratio = contrastRatio(hex1, hex2);
    QFETCH(QString, text);
    QCOMPARE(contrastRatioText(ratio), text);
    QFETCH(QString, label);
    QCOMPARE(wcagLabel(wcagLevel(ratio)), label);
}

void TestContrast::levels_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QString>("label");
    QTest::newRow("21") << 21.0 << "AAA";
    QTest::newRow("7") << 7.0 << "AAA";
    QTest::newRow("6.99") << 6.99 << "AA";
    QTest::newRow("4.5") << 4.5 << "AA";
    QTest::newRow("4.49") << 4.49 << "AA Large";
    QTest::newRow("3") << 3.0 << "AA Large";
    QTest::newRow("2.99") << 2.99 << "Fail";
    QTest::newRow("1") << 1.0 << "Fail";
}

void TestContrast::levels()
{
    QFETCH(double, ratio);
    QFETCH(QString, label);
    QCOMPARE(wcagLabel(wcagLevel(ratio)), label);
}

void TestContrast::luminanceThresholdTakesLinearBranch()
{
    QCOMPARE(relativeLuminance(0.03928, 0, 0), 0.2126 * (0.03928 / 12.92));
    QVERIFY(relativeLuminance(0.03929, 0, 0) > 0.2126 * (0.03929 / 12.92) * 0.99);
    QCOMPARE(relativeLuminance(1, 1, 1), 1.0);
    QCOMPARE(relativeLuminance(0, 0, 0), 0.0);
}

void TestContrast::levelColors()
{
    QCOMPARE(wcagColor(WcagLevel::AA).rgb(), wcagColor(WcagLevel::AAA).rgb());
    QCOMPARE(wcagColor(WcagLevel::AA).alphaF(), 0.8f);
    QCOMPARE(wcagColor(WcagLevel::AAA).alphaF(), 1.0f);
    QVERIFY(wcagColor(WcagLevel::Fail).red() > wcagColor(WcagLevel::Fail).green());
    QVERIFY(wcagColor(WcagLevel::AALarge).red() > 200 && wcagColor(WcagLevel::AALarge).green() > 200);
}

QTEST_APPLESS_MAIN(TestContrast)
#include "tst_contrast.moc"
