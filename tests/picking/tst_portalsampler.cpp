#include "support/FakePortal.h"

#include "picking/PortalColorSampler.h"
#include "picking/PortalRequest.h"
#include "picking/TintwrightService.h"

#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using Mode = FakePortal::Mode;
Q_DECLARE_METATYPE(FakePortal::Mode)

namespace {

// What a sampler reported, in order.
struct Reports
{
    QList<SampledColor> colors;
    int cancels = 0;
    QStringList failures;
    QStringList ended; // by the portal, without a color: a cancel with a line
    int total() const { return int(colors.size() + failures.size() + ended.size()) + cancels; }
    explicit Reports(ColorSampler *sampler)
    {
        QObject::connect(sampler, &ColorSampler::colorSampled,
                         [this](const SampledColor &c) { colors << c; });
        QObject::connect(sampler, &ColorSampler::cancelled, [this] { ++cancels; });
        QObject::connect(sampler, &ColorSampler::failed, [this](const QString &why) { failures << why; });
        QObject::connect(sampler, &ColorSampler::endedWithoutColor,
                         [this](const QString &why) { ended << why; });
    }
};

// Ends a pick after start() returned, with a color or a cancel; then
// reports once more, as a misbehaving sampler might.
struct ScriptedSampler : ColorSampler
{
    ScriptedSampler(bool picks, QObject *parent)
        : ColorSampler(parent)
        , picks(picks)
    {
    }
    void start() override
    {
        QTimer::singleShot(0, this, [this] {
            if (picks)
                emit colorSampled({128 / 255.0, 0.2, 1.0 / 3.0, 1.0});
            emit cancelled();
        });
    }
    bool picks;
};

} // namespace

// The portal protocol against a fake portal, and the one result the service
// ends every pick with; its fallback order is tested on Wayland.
class TestPortalSampler : public QObject
{
    Q_OBJECT

private slots:
    void portalOutcomes_data()
    {
        QTest::addColumn<Mode>("mode");
        QTest::addColumn<int>("colors");
        QTest::addColumn<int>("cancels");
        QTest::addColumn<QString>("failure");
        QTest::newRow("success") << Mode::Color << 1 << 0 << QString();
        QTest::newRow("an old portal's own handle is followed")
            << Mode::MismatchedHandle << 1 << 0 << QString();
        QTest::newRow("cancel") << Mode::Cancel << 0 << 1 << QString();
        QTest::newRow("ended by the portal") << Mode::ErrorResponse << 0 << 0 << "response 2";
        QTest::newRow("error reply") << Mode::ErrorReply << 0 << 0 << "AccessDenied";
        QTest::newRow("success without a color") << Mode::NoColor << 0 << 0 << "without a color";
        QTest::newRow("portal leaves mid-pick") << Mode::Vanish << 0 << 0 << "went away";
        QTest::newRow("no bus at all") << Mode::Silent << 0 << 0 << "no session bus";
    }

    void portalOutcomes()
    {
        QFETCH(Mode, mode);
        QFETCH(int, colors);
        QFETCH(QString, failure);
        FakePortal portal;
        portal.mode = mode;
        portal.color[0] = 128 / 255.0;
        portal.color[1] = 1.0 / 3.0;
        QVERIFY(portal.registerOnBus());
        const bool noBus = mode == Mode::Silent;
        const QDBusConnection bus = noBus ? QDBusConnection::connectToBus(
                                        QStringLiteral("unix:path=/nonexistent"), QStringLiteral("nowhere"))
                                          : portal.connect();
        portal.answerDelay = 200;
        PortalColorSampler sampler(bus);
        Reports reports(&sampler);
        sampler.start();
        QCOMPARE(reports.total(), 0); // reported only after start() returns
        // A Response from anyone but the portal is not the answer.
        if (!noBus && QTest::qWaitFor([&] { return !portal.predictedPaths.isEmpty(); }, 2000))
            FakePortal::respond(portal.connect(), portal.predictedPaths.first(), 0,
                                FakePortal::colorResults(1, 0, 0));
        QTRY_COMPARE(reports.total(), 1);
        QCOMPARE(reports.colors.size(), colors);
        QTEST(reports.cancels, "cancels");
        if (!failure.isEmpty())
            QVERIFY2((reports.failures + reports.ended).value(0).contains(failure),
                     qPrintable((reports.failures + reports.ended).value(0)));
        if (colors) // exact: no detour through single precision
            QVERIFY(reports.colors.first() == (SampledColor{128 / 255.0, 1.0 / 3.0, 0.8, 1.0}));
        if (noBus)
            return;
        // A fresh, unguessable token each time, and the path it makes known.
        static QStringList seen;
        QCOMPARE(portal.tokens.size(), 1);
        const QString token = portal.tokens.first();
        QVERIFY2(!seen.contains(token) && token.size() == 43 && token.startsWith("tintwright_"),
                 qPrintable(token));
        seen += token;
        QCOMPARE(portal.predictedPaths.first(), PortalRequest::requestPath(bus, token));
        // Exactly once: nothing follows, not even a late Response.
        FakePortal::respond(portal.portalBus, portal.returnedHandles.value(0, portal.predictedPaths.first()),
                            0, FakePortal::colorResults(1, 1, 1));
        QTest::qWait(100);
        QCOMPARE(reports.total(), 1);
    }

    // Whatever the sampler does, one result ends the pick, and only a
    // color picked replaces the one on show.
    void serviceEndsEveryPickWithOneResult_data()
    {
        QTest::addColumn<bool>("picks");
        QTest::newRow("picked") << true;
        QTest::newRow("cancelled") << false;
    }

    void serviceEndsEveryPickWithOneResult()
    {
        QFETCH(bool, picks);
        TintwrightService service;
        QCOMPARE(service.pickedColor()->name, QStringLiteral("White"));
        QSignalSpy picking(&service, &TintwrightService::isPickingChanged);
        QSignalSpy finished(&service, &TintwrightService::pickFinished);
        service.setSamplerFactory(
            [picks](QObject *parent) -> ColorSampler * { return new ScriptedSampler(picks, parent); });
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
        QCOMPARE(result.isPicked(), picks);
        if (!picks) {
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

QTEST_MAIN(TestPortalSampler)
#include "tst_portalsampler.moc"
