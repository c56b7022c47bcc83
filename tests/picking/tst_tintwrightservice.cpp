#include "picking/ColorSampler.h"
#include "picking/TintwrightService.h"
#include "support/StdoutCapture.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <optional>

namespace {

// How a scripted sampler ends: a color, a cancel (none) or a failure.
struct Outcome
{
    std::optional<SampledColor> color;
    bool fails = false;
};

// Answers a pick with a fixed outcome after start() has returned, and
// records how isPicking looked while it was on screen.
class ScriptedSampler : public ColorSampler
{
public:
    ScriptedSampler(Outcome outcome, const TintwrightService *service, QObject *parent)
        : ColorSampler(parent)
        , m_outcome(outcome)
        , m_service(service)
    {
    }

    void start() override
    {
        QTimer::singleShot(0, this, [this] {
            pickingWhileShown = m_service->isPicking();
            if (m_outcome.fails)
                emit failed(QStringLiteral("scripted failure"));
            else if (m_outcome.color)
                emit colorSampled(*m_outcome.color);
            else
                emit cancelled();
            // A misbehaving sampler that reports twice changes nothing.
            emit cancelled();
        });
    }

    static inline bool pickingWhileShown = false;

private:
    Outcome m_outcome;
    const TintwrightService *m_service;
};

} // namespace

Q_DECLARE_METATYPE(Outcome)

class TestTintwrightService : public QObject
{
    Q_OBJECT

private slots:
    void startsWhite();
    void pick_data();
    void pick();
    void samePixelTwiceGivesTwoEntries();

private:
    void pickWith(TintwrightService &service, Outcome outcome);
};

void TestTintwrightService::pickWith(TintwrightService &service, Outcome outcome)
{
    service.setSamplerFactory([outcome, &service](QObject *parent) -> ColorSampler * {
        return new ScriptedSampler(outcome, &service, parent);
    });
    QSignalSpy finished(&service, &TintwrightService::pickFinished);
    service.pickColor();
    QVERIFY(service.isPicking());
    QTRY_COMPARE(finished.size(), 1);
    QTest::qWait(10);
    QCOMPARE(finished.size(), 1);
}

void TestTintwrightService::startsWhite()
{
    TintwrightService service;
    QVERIFY(service.pickedColor());
    const ColorItem white = *service.pickedColor();
    QCOMPARE(white.name, QStringLiteral("White"));
    QVERIFY(white.red == 1.0 && white.green == 1.0 && white.blue == 1.0 && white.alpha == 1.0);
    QVERIFY(!white.id.isNull());
    QVERIFY(!service.isPicking());
}

void TestTintwrightService::pick_data()
{
    QTest::addColumn<Outcome>("outcome");
    QTest::newRow("cancel") << Outcome{};
    QTest::newRow("pure red") << Outcome{SampledColor{1.0, 0.0, 0.0, 1.0}};
    QTest::newRow("128/255 stays exact") << Outcome{SampledColor{128 / 255.0, 0.2, 1.0 / 3.0, 1.0}};
    // Without a screen the loupe cannot take over either: a cancel, and one
    // line saying why.
    QTest::newRow("fails, no screen for the loupe") << Outcome{std::nullopt, true};
}

void TestTintwrightService::pick()
{
    QFETCH(Outcome, outcome);
    TintwrightService service;
    const ColorItem before = *service.pickedColor();
    QSignalSpy picking(&service, &TintwrightService::isPickingChanged);
    QSignalSpy changed(&service, &TintwrightService::pickedColorChanged);
    QSignalSpy unavailable(&service, &TintwrightService::pickUnavailable);
    ScriptedSampler::pickingWhileShown = false;
    StdoutCapture output;

    pickWith(service, outcome);

    QVERIFY(ScriptedSampler::pickingWhileShown);
    QCOMPARE(picking.size(), 2);
    QCOMPARE(picking.at(0).at(0).toBool(), true);
    QCOMPARE(picking.at(1).at(0).toBool(), false);
    const QByteArray text = output.text();
    QCOMPARE(text.count('\n'), outcome.fails ? 1 : 0);
    if (outcome.fails)
        QVERIFY2(text.startsWith("Cannot pick a color: scripted failure; "), text.constData());
    QCOMPARE(unavailable.size(), outcome.fails ? 1 : 0);
    QCOMPARE(service.unavailableReason().isEmpty(), !outcome.fails);
    const ColorItem after = *service.pickedColor();
    if (!outcome.color) {
        QCOMPARE(changed.size(), 0);
        QVERIFY(after == before);
        return;
    }
    QCOMPARE(changed.size(), 1);
    QCOMPARE(after.name, QStringLiteral("Picked Color"));
    QVERIFY(after.id != before.id);
    QVERIFY(after.red == outcome.color->red);
    QVERIFY(after.green == outcome.color->green);
    QVERIFY(after.blue == outcome.color->blue);
    QVERIFY(after.alpha == outcome.color->alpha);
    QVERIFY(qAbs(after.dateAdded.secsTo(QDateTime::currentDateTimeUtc())) <= 1);
}

void TestTintwrightService::samePixelTwiceGivesTwoEntries()
{
    TintwrightService service;
    const Outcome red{SampledColor{1.0, 0.0, 0.0, 1.0}};
    pickWith(service, red);
    const ColorItem first = *service.pickedColor();
    pickWith(service, red);
    const ColorItem second = *service.pickedColor();
    QVERIFY(first.id != second.id);
    QVERIFY(first != second);
}

QTEST_GUILESS_MAIN(TestTintwrightService)
#include "tst_tintwrightservice.moc"
