#include "model/Contrast.h"

#include <QTest>

class TestContrast : public QObject
{
    Q_OBJECT

private slots:
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

QTEST_APPLESS_MAIN(TestContrast)
#include "tst_contrast.moc"
