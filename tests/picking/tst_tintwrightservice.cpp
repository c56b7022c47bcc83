#include "picking/ColorSampler.h"
#include "picking/TintwrightService.h"
#include "support/StdoutCapture.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <optional>

// Ends a pick after start() returned: a color, a cancel (none) or a
// failure; then reports once more, as a misbehaving sampler might.
struct ScriptedSampler : ColorSampler
{
    ScriptedSampler(std::optional<SampledColor> color, bool fails, QObject *parent)
        : ColorSampler(parent)
        , color(color)
        , fails(fails)
    {
    }
    void start() override
    {
        QTimer::singleShot(0, this, [this] {
            if (fails)
                emit failed(QStringLiteral("scripted failure"));
            else if (color)
                emit colorSampled(*color);
            else
                emit cancelled();
            emit cancelled();
        });
    }
    std::optional<SampledColor> color;
    bool fails;
};

class TestTintwrightService : public QObject
{
    Q_OBJECT

private slots:
    void pick_data()
    {
        QTest::addColumn<std::optional<SampledColor>>("color");
        QTest::addColumn<bool>("fails");
        QTest::newRow("cancel") << std::optional<SampledColor>() << false;
        QTest::newRow("128/255 stays exact")
            << std::optional(SampledColor{128 / 255.0, 0.2, 1.0 / 3.0, 1.0}) << false;
        // Without a screen the loupe cannot take over: one line says why.
        QTest::newRow("fails, no screen for the loupe") << std::optional<SampledColor>() << true;
    }

    void pick()
    {
        QFETCH(std::optional<SampledColor>, color);
        QFETCH(bool, fails);
        TintwrightService service;
        QCOMPARE(service.pickedColor()->name, QStringLiteral("White"));
        QSignalSpy picking(&service, &TintwrightService::isPickingChanged);
        QSignalSpy finished(&service, &TintwrightService::pickFinished);
        QSignalSpy unavailable(&service, &TintwrightService::pickUnavailable);
        service.setSamplerFactory(
            [&](QObject *parent) -> ColorSampler * { return new ScriptedSampler(color, fails, parent); });
        StdoutCapture output;
        // The same pixel twice is two picks, each a color of its own.
        QList<ColorItem> seen{*service.pickedColor()};
        for (int round = 1; round <= 2; ++round) {
            service.pickColor();
            QVERIFY(service.isPicking());
            QTRY_COMPARE(finished.size(), round);
            seen.append(*service.pickedColor());
        }
        QTest::qWait(10);
        QCOMPARE(finished.size(), 2);
        QCOMPARE(picking.size(), 4);
        QCOMPARE(picking.at(1).at(0).toBool(), false);
        QCOMPARE(unavailable.size(), fails ? 2 : 0);
        QCOMPARE(output.text().count('\n'), fails ? 2 : 0);
        if (fails)
            QVERIFY2(output.text().startsWith("Cannot pick a color: scripted failure; "),
                     output.text().constData());
        if (!color) {
            QVERIFY(seen[2] == seen[0] && seen[1] == seen[0]);
            return;
        }
        QVERIFY(seen[1].id != seen[0].id && seen[2].id != seen[1].id);
        QCOMPARE(seen[2].name, QStringLiteral("Picked Color"));
        QVERIFY(seen[2].red == color->red && seen[2].green == color->green && seen[2].blue == color->blue);
        QVERIFY(qAbs(seen[2].dateAdded.secsTo(QDateTime::currentDateTimeUtc())) <= 1);
    }
};

QTEST_GUILESS_MAIN(TestTintwrightService)
#include "tst_tintwrightservice.moc"
