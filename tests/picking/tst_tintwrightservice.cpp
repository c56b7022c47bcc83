#include "picking/ColorSampler.h"
#include "picking/TintwrightService.h"
#include "support/StdoutCapture.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using Outcome = PickResult::Outcome;

// Ends a pick after start() returned, as told; then reports once more, as a
// misbehaving sampler might.
struct ScriptedSampler : ColorSampler
{
    ScriptedSampler(Outcome outcome, QObject *parent)
        : ColorSampler(parent)
        , outcome(outcome)
    {
    }
    void start() override
    {
        QTimer::singleShot(0, this, [this] {
            if (outcome == Outcome::Unavailable)
                emit failed(QStringLiteral("scripted failure"));
            else if (outcome == Outcome::Picked)
                emit colorSampled({128 / 255.0, 0.2, 1.0 / 3.0, 1.0});
            else
                emit cancelled();
            emit cancelled();
        });
    }
    Outcome outcome;
};

// Whatever the sampler does, one result ends the pick, and only a color
// picked replaces the one on show.
class TestTintwrightService : public QObject
{
    Q_OBJECT

private slots:
    void oneResultEndsEveryPick_data()
    {
        QTest::addColumn<Outcome>("outcome");
        QTest::newRow("picked") << Outcome::Picked;
        QTest::newRow("cancelled") << Outcome::Cancelled;
        // Without a screen the loupe cannot take over: one line says why.
        QTest::newRow("unavailable, no screen for the loupe") << Outcome::Unavailable;
    }

    void oneResultEndsEveryPick()
    {
        QFETCH(Outcome, outcome);
        TintwrightService service;
        QCOMPARE(service.pickedColor()->name, QStringLiteral("White"));
        QSignalSpy picking(&service, &TintwrightService::isPickingChanged);
        QSignalSpy finished(&service, &TintwrightService::pickFinished);
        service.setSamplerFactory(
            [outcome](QObject *parent) -> ColorSampler * { return new ScriptedSampler(outcome, parent); });
        StdoutCapture output;
        // The same pixel twice is two picks, each a color of its own.
        QList<ColorItem> seen{*service.pickedColor()};
        for (int round = 1; round <= 2; ++round) {
            service.pickColor();
            QVERIFY(service.isPicking());
            QTRY_COMPARE(finished.size(), round);
            QVERIFY(!service.isPicking());
            seen.append(*service.pickedColor());
        }
        QTest::qWait(10);
        QCOMPARE(finished.size(), 2);
        QCOMPARE(picking.size(), 4);
        const PickResult result = finished.last().first().value<PickResult>();
        QCOMPARE(result.outcome, outcome);
        QCOMPARE(output.text().count('\n'), outcome == Outcome::Unavailable ? 2 : 0);
        if (outcome == Outcome::Unavailable) {
            QVERIFY2(result.reason.startsWith("scripted failure; "), qPrintable(result.reason));
            QVERIFY(output.text().startsWith("Cannot pick a color: scripted failure; "));
        }
        if (outcome != Outcome::Picked) {
            QVERIFY(seen[2] == seen[0] && seen[1] == seen[0] && result.colors.isEmpty());
            return;
        }
        QVERIFY(seen[1].id != seen[0].id && seen[2].id != seen[1].id);
        QCOMPARE(result.colors, QList<ColorItem>{seen[2]});
        QCOMPARE(seen[2].name, QStringLiteral("Picked Color"));
        QVERIFY(seen[2].red == 128 / 255.0 && seen[2].green == 0.2 && seen[2].blue == 1.0 / 3.0);
        QVERIFY(qAbs(seen[2].dateAdded.secsTo(QDateTime::currentDateTimeUtc())) <= 1);
    }
};

QTEST_GUILESS_MAIN(TestTintwrightService)
#include "tst_tintwrightservice.moc"
