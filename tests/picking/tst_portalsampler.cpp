#include "FakeScreenshotPortal.h"
#include "PrivateSessionBus.h"
#include "support/StdoutCapture.h"

#include "picking/LoupeOverlay.h"
#include "picking/PortalAvailability.h"
#include "picking/PortalColorSampler.h"
#include "picking/PortalRequest.h"
#include "picking/TintwrightService.h"

#include <QDBusMessage>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

using Mode = FakeScreenshotPortal::Mode;
using Answer = PortalAvailability::Answer;
Q_DECLARE_METATYPE(FakeScreenshotPortal::Mode)
Q_DECLARE_METATYPE(PortalAvailability::Answer)

// What a sampler reported, in order.
struct Outcome
{
    QList<SampledColor> colors;
    int cancels = 0;
    QStringList failures;
    int total() const { return int(colors.size() + failures.size()) + cancels; }
    explicit Outcome(ColorSampler *sampler)
    {
        QObject::connect(sampler, &ColorSampler::colorSampled,
                         [this](const SampledColor &c) { colors << c; });
        QObject::connect(sampler, &ColorSampler::cancelled, [this] { ++cancels; });
        QObject::connect(sampler, &ColorSampler::failed, [this](const QString &why) { failures << why; });
    }
};

LoupeOverlay *shownOverlay()
{
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        if (auto *overlay = qobject_cast<LoupeOverlay *>(window); overlay && overlay->isVisible())
            return overlay;
    }
    return nullptr;
}

// The portal protocol against a fake portal on a bus of the test's own,
// and the service falling back from it to the loupe.
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
        QTest::newRow("error response") << Mode::ErrorResponse << 0 << 0 << "response 2";
        QTest::newRow("error reply") << Mode::ErrorReply << 0 << 0 << "AccessDenied";
        QTest::newRow("success without a color") << Mode::NoColor << 0 << 0 << "without a color";
        QTest::newRow("portal leaves mid-pick") << Mode::Vanish << 0 << 0 << "went away";
        QTest::newRow("no bus at all") << Mode::Silent << 0 << 0 << "no session bus";
    }

    void portalOutcomes()
    {
        QFETCH(Mode, mode);
        QFETCH(int, colors);
        QFETCH(int, cancels);
        QFETCH(QString, failure);
        const PortalColor sent{128 / 255.0, 1.0 / 3.0, 0.1};
        FakeScreenshotPortal portal(connect(), mode, sent);
        QVERIFY(portal.registerOnBus());
        const bool noBus = mode == Mode::Silent;
        const QDBusConnection bus = noBus ? QDBusConnection::connectToBus(
                                        QStringLiteral("unix:path=/nonexistent"), QStringLiteral("nowhere"))
                                          : connect();
        PortalColorSampler sampler(bus);
        Outcome outcome(&sampler);
        sampler.start();
        QCOMPARE(outcome.total(), 0); // reported only after start() returns
        QTRY_COMPARE(outcome.total(), 1);
        QCOMPARE(outcome.colors.size(), colors);
        QCOMPARE(outcome.cancels, cancels);
        if (!failure.isEmpty())
            QVERIFY2(outcome.failures.value(0).contains(failure), qPrintable(outcome.failures.value(0)));
        if (colors) { // exact: no detour through single precision
            const SampledColor got = outcome.colors.first();
            QVERIFY(got.red == sent.red && got.green == sent.green && got.blue == sent.blue
                    && got.alpha == 1.0);
        }
        if (noBus)
            return;
        // A fresh, unguessable token each time, and the path it makes known.
        static QStringList seen;
        QCOMPARE(portal.tokens.size(), 1);
        const QString token = portal.tokens.first();
        QVERIFY2(!seen.contains(token) && token.size() == 43 && token.startsWith("tintwright_"),
                 qPrintable(token));
        seen += token;
        QCOMPARE(portal.predictedPaths.first(), PortalRequest::requestPath(bus, portal.tokens.first()));
        // Exactly once: nothing follows, not even a late Response.
        portal.respond(portal.returnedHandles.value(0, portal.predictedPaths.first()), 0,
                       FakeScreenshotPortal::colorResults({1, 1, 1}));
        QTest::qWait(100);
        QCOMPARE(outcome.total(), 1);
    }

    void responseFromAnotherSenderIsIgnored()
    {
        FakeScreenshotPortal portal(connect(), Mode::Silent);
        QVERIFY(portal.registerOnBus());
        PortalColorSampler sampler(connect());
        Outcome outcome(&sampler);
        sampler.start();
        QTRY_COMPARE(portal.predictedPaths.size(), 1);
        QDBusMessage forged = QDBusMessage::createSignal(portal.predictedPaths.first(),
                                                         QStringLiteral("org.freedesktop.portal.Request"),
                                                         QStringLiteral("Response"));
        forged << uint(0) << FakeScreenshotPortal::colorResults({1, 0, 0});
        QVERIFY(connect().send(forged));
        QTest::qWait(150);
        QCOMPARE(outcome.total(), 0);
        portal.respond(portal.predictedPaths.first(), 1, {});
        QTRY_COMPARE(outcome.cancels, 1);
    }

    void serviceTriesPortalThenLoupe_data()
    {
        QTest::addColumn<bool>("portalOnBus");
        QTest::addColumn<Mode>("mode");
        QTest::addColumn<bool>("loupe");
        QTest::addColumn<bool>("picked");
        QTest::newRow("portal answers: no loupe") << true << Mode::Color << false << true;
        QTest::newRow("portal cancelled: no loupe") << true << Mode::Cancel << false << false;
        QTest::newRow("no portal: loupe") << false << Mode::Color << true << true;
        QTest::newRow("portal refuses: loupe") << true << Mode::ErrorReply << true << true;
    }

    void serviceTriesPortalThenLoupe()
    {
        QFETCH(bool, portalOnBus);
        QFETCH(Mode, mode);
        QFETCH(bool, loupe);
        QFETCH(bool, picked);
        FakeScreenshotPortal portal(connect(), mode, {1.0, 0.0, 0.0});
        if (portalOnBus)
            QVERIFY(portal.registerOnBus());
        QDBusConnection bus = connect();
        TintwrightService service;
        service.setSamplerFactory(
            [bus](QObject *parent) -> ColorSampler * { return new PortalColorSampler(bus, parent); });
        const ColorItem before = *service.pickedColor();
        QSignalSpy finished(&service, &TintwrightService::pickFinished);
        StdoutCapture output;
        service.pickColor();
        if (loupe) {
            QTRY_VERIFY(shownOverlay());
            QVERIFY(QTest::qWaitForWindowExposed(shownOverlay()));
            QCOMPARE(finished.size(), 0);
            QTest::keyClick(shownOverlay(), Qt::Key_Return);
        }
        QTRY_COMPARE(finished.size(), 1);
        QVERIFY(!shownOverlay() && !service.isPicking());
        const ColorItem after = *service.pickedColor();
        QCOMPARE(after.id != before.id, picked);
        if (picked && !loupe)
            QVERIFY(after.red == 1.0 && after.green == 0.0 && after.blue == 0.0);
        QCOMPARE(output.text(), QByteArray()); // a working fallback is no failure
    }

    void portalLookedForOnce_data()
    {
        QTest::addColumn<bool>("onBusAtStart");
        QTest::addColumn<bool>("registersLater");
        QTest::addColumn<Answer>("firstAnswer");
        QTest::addColumn<Answer>("laterAnswer");
        QTest::newRow("there from the start") << true << false << Answer::Present << Answer::Present;
        QTest::newRow("never there") << false << false << Answer::Absent << Answer::Absent;
        QTest::newRow("starts later") << false << true << Answer::Absent << Answer::Present;
    }

    void portalLookedForOnce()
    {
        // Asked of the bus itself, so a missing portal costs no call that waits
        // to time out; answered once, and a portal that starts later noticed.
        QFETCH(bool, onBusAtStart);
        QFETCH(bool, registersLater);
        QFETCH(Answer, firstAnswer);
        QFETCH(Answer, laterAnswer);
        FakeScreenshotPortal portal(connect(), Mode::Color);
        if (onBusAtStart)
            QVERIFY(portal.registerOnBus());
        PortalAvailability availability([this] { return connect(); });
        QSignalSpy answered(&availability, &PortalAvailability::answered);
        QCOMPARE(availability.answer(), Answer::Unknown);
        QVERIFY(answered.wait(2000));
        QCOMPARE(availability.answer(), firstAnswer);
        if (registersLater)
            QVERIFY(portal.registerOnBus());
        QTRY_COMPARE(availability.answer(), laterAnswer);
        QCOMPARE(answered.size(), 1);
        QVERIFY(portal.tokens.isEmpty());
    }

private:
    QDBusConnection connect()
    {
        return QDBusConnection::connectToBus(m_bus.address(), QString::number(++m_count));
    }
    PrivateSessionBus m_bus;
    int m_count = 0;
};

QTEST_MAIN(TestPortalSampler)
#include "tst_portalsampler.moc"
