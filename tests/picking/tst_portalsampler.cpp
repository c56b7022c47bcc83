#include "FakeScreenshotPortal.h"
#include "PrivateSessionBus.h"
#include "support/StdoutCapture.h"

#include "picking/LoupeOverlay.h"
#include "picking/PortalAvailability.h"
#include "picking/PortalColorSampler.h"
#include "picking/TintwrightService.h"

#include <QApplication>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>

using Mode = FakeScreenshotPortal::Mode;
Q_DECLARE_METATYPE(FakeScreenshotPortal::Mode)
Q_DECLARE_METATYPE(PortalAvailability::Answer)

namespace {

// What a sampler reported, in order.
struct Outcome
{
    QList<SampledColor> colors;
    int cancels = 0;
    QStringList failures;
    int total() const { return int(colors.size()) + cancels + int(failures.size()); }
};

void record(ColorSampler *sampler, Outcome &outcome)
{
    QObject::connect(sampler, &ColorSampler::colorSampled,
                     [&outcome](const SampledColor &color) { outcome.colors.append(color); });
    QObject::connect(sampler, &ColorSampler::cancelled, [&outcome] { ++outcome.cancels; });
    QObject::connect(sampler, &ColorSampler::failed,
                     [&outcome](const QString &reason) { outcome.failures.append(reason); });
}

// The loupe's overlay on screen, if any.
LoupeOverlay *shownOverlay()
{
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        if (auto *overlay = qobject_cast<LoupeOverlay *>(window); overlay && overlay->isVisible())
            return overlay;
    }
    return nullptr;
}

} // namespace

class TestPortalSampler : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void portalOutcomes_data();
    void portalOutcomes();
    void colorTravelsExactly();
    void mismatchedHandleIsFollowed();
    void responseFromAnotherSenderIsIgnored();
    void tokensAreFreshAndUnguessable();
    void noBusFails();
    void serviceTriesPortalThenLoupe_data();
    void serviceTriesPortalThenLoupe();
    void portalLookedForOnce_data();
    void portalLookedForOnce();

private:
    QDBusConnection clientBus();
    QDBusConnection portalBus();

    std::unique_ptr<PrivateSessionBus> m_bus;
    int m_connections = 0;
};

void TestPortalSampler::initTestCase()
{
    m_bus = std::make_unique<PrivateSessionBus>();
    QVERIFY2(m_bus->isRunning(), "dbus-daemon did not start");
}

void TestPortalSampler::cleanup()
{
    QTest::qWait(20);
}

QDBusConnection TestPortalSampler::clientBus()
{
    const QString name = QStringLiteral("client-%1").arg(++m_connections);
    return QDBusConnection::connectToBus(m_bus->address(), name);
}

QDBusConnection TestPortalSampler::portalBus()
{
    const QString name = QStringLiteral("portal-%1").arg(++m_connections);
    return QDBusConnection::connectToBus(m_bus->address(), name);
}

void TestPortalSampler::portalOutcomes_data()
{
    QTest::addColumn<Mode>("mode");
    QTest::addColumn<int>("colors");
    QTest::addColumn<int>("cancels");
    QTest::addColumn<QString>("failure");

    QTest::newRow("success") << Mode::Color << 1 << 0 << QString();
    QTest::newRow("cancel") << Mode::Cancel << 0 << 1 << QString();
    QTest::newRow("error response") << Mode::ErrorResponse << 0 << 0 << "response 2";
    QTest::newRow("error reply") << Mode::ErrorReply << 0 << 0 << "AccessDenied";
    QTest::newRow("success without a color") << Mode::NoColor << 0 << 0 << "without a color";
    QTest::newRow("portal leaves mid-pick") << Mode::Vanish << 0 << 0 << "went away";
}

void TestPortalSampler::portalOutcomes()
{
    QFETCH(Mode, mode);
    QFETCH(int, colors);
    QFETCH(int, cancels);
    QFETCH(QString, failure);

    FakeScreenshotPortal portal(portalBus(), mode, {0.25, 0.5, 0.75});
    QVERIFY(portal.registerOnBus());
    PortalColorSampler sampler(clientBus());
    Outcome outcome;
    record(&sampler, outcome);
    sampler.start();
    QTRY_COMPARE(outcome.total(), 1);
    QCOMPARE(outcome.colors.size(), colors);
    QCOMPARE(outcome.cancels, cancels);
    QCOMPARE(outcome.failures.size(), failure.isEmpty() ? 0 : 1);
    if (!failure.isEmpty())
        QVERIFY2(outcome.failures.first().contains(failure), qPrintable(outcome.failures.first()));
    QCOMPARE(portal.tokens.size(), 1);
    // Exactly once: nothing follows, not even a late Response.
    portal.respond(portal.predictedPaths.first(), 0, FakeScreenshotPortal::colorResults({1, 1, 1}));
    QTest::qWait(100);
    QCOMPARE(outcome.total(), 1);
}

void TestPortalSampler::colorTravelsExactly()
{
    const PortalColor sent{128 / 255.0, 1.0 / 3.0, 0.1};
    FakeScreenshotPortal portal(portalBus(), Mode::Color, sent);
    QVERIFY(portal.registerOnBus());
    PortalColorSampler sampler(clientBus());
    Outcome outcome;
    record(&sampler, outcome);
    sampler.start();
    QTRY_COMPARE(outcome.total(), 1);
    QCOMPARE(outcome.colors.size(), 1);
    const SampledColor got = outcome.colors.first();
    QVERIFY(got.red == sent.red);
    QVERIFY(got.green == sent.green);
    QVERIFY(got.blue == sent.blue);
    QVERIFY(got.alpha == 1.0);
}

void TestPortalSampler::mismatchedHandleIsFollowed()
{
    FakeScreenshotPortal portal(portalBus(), Mode::MismatchedHandle, {0.0, 1.0, 0.5});
    QVERIFY(portal.registerOnBus());
    PortalColorSampler sampler(clientBus());
    Outcome outcome;
    record(&sampler, outcome);
    sampler.start();
    QTRY_COMPARE(outcome.total(), 1);
    QCOMPARE(portal.returnedHandles.size(), 1);
    QVERIFY(portal.returnedHandles.first() != portal.predictedPaths.first());
    QCOMPARE(outcome.colors.size(), 1);
    QVERIFY(outcome.colors.first().green == 1.0);
    QVERIFY(outcome.colors.first().blue == 0.5);
}

void TestPortalSampler::responseFromAnotherSenderIsIgnored()
{
    FakeScreenshotPortal portal(portalBus(), Mode::Silent);
    QVERIFY(portal.registerOnBus());
    PortalColorSampler sampler(clientBus());
    Outcome outcome;
    record(&sampler, outcome);
    sampler.start();
    QTRY_COMPARE(portal.predictedPaths.size(), 1);

    // Another client on the bus tries to answer in the portal's place.
    QDBusConnection intruder = clientBus();
    QDBusMessage forged = QDBusMessage::createSignal(portal.predictedPaths.first(),
                                                     QStringLiteral("org.freedesktop.portal.Request"),
                                                     QStringLiteral("Response"));
    forged << uint(0) << FakeScreenshotPortal::colorResults({1, 0, 0});
    QVERIFY(intruder.send(forged));
    QTest::qWait(150);
    QCOMPARE(outcome.total(), 0);

    portal.respond(portal.predictedPaths.first(), 1, {});
    QTRY_COMPARE(outcome.cancels, 1);
    QCOMPARE(outcome.total(), 1);
}

void TestPortalSampler::tokensAreFreshAndUnguessable()
{
    FakeScreenshotPortal portal(portalBus(), Mode::Cancel);
    QVERIFY(portal.registerOnBus());
    QDBusConnection bus = clientBus();
    for (int i = 0; i < 3; ++i) {
        PortalColorSampler sampler(bus);
        Outcome outcome;
        record(&sampler, outcome);
        sampler.start();
        QTRY_COMPARE(outcome.total(), 1);
    }
    QCOMPARE(portal.tokens.size(), 3);
    const QRegularExpression form(QStringLiteral("^tintwright_[0-9a-f]{32}$"));
    for (const QString &token : portal.tokens)
        QVERIFY2(form.match(token).hasMatch(), qPrintable(token));
    QCOMPARE(QSet<QString>(portal.tokens.begin(), portal.tokens.end()).size(), 3);
    QCOMPARE(portal.predictedPaths.first(), PortalColorSampler::requestPath(bus, portal.tokens.first()));
}

void TestPortalSampler::noBusFails()
{
    PortalColorSampler sampler(QDBusConnection::connectToBus(
        QStringLiteral("unix:path=/nonexistent/tintwright-bus"), QStringLiteral("nowhere")));
    Outcome outcome;
    record(&sampler, outcome);
    sampler.start();
    // Reported after start() returns, like every other outcome.
    QCOMPARE(outcome.total(), 0);
    QTRY_COMPARE(outcome.failures.size(), 1);
    QVERIFY(outcome.failures.first().startsWith(QLatin1String("no session bus")));
}

void TestPortalSampler::serviceTriesPortalThenLoupe_data()
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

void TestPortalSampler::serviceTriesPortalThenLoupe()
{
    QFETCH(bool, portalOnBus);
    QFETCH(Mode, mode);
    QFETCH(bool, loupe);
    QFETCH(bool, picked);
    if (loupe && QGuiApplication::platformName() != QLatin1String("xcb"))
        QSKIP("the loupe needs an X display");

    FakeScreenshotPortal portal(portalBus(), mode, {1.0, 0.0, 0.0});
    if (portalOnBus)
        QVERIFY(portal.registerOnBus());
    QDBusConnection bus = clientBus();
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
    QVERIFY(!shownOverlay());
    QVERIFY(!service.isPicking());
    const ColorItem after = *service.pickedColor();
    QCOMPARE(after.id != before.id, picked);
    if (picked && !loupe)
        QVERIFY(after.red == 1.0 && after.green == 0.0 && after.blue == 0.0);
    // A working fallback is not a failure worth a line.
    QCOMPARE(output.text(), QByteArray());
}

void TestPortalSampler::portalLookedForOnce_data()
{
    QTest::addColumn<bool>("onBusAtStart");
    QTest::addColumn<bool>("registersLater");
    QTest::addColumn<PortalAvailability::Answer>("firstAnswer");
    QTest::addColumn<PortalAvailability::Answer>("laterAnswer");

    using Answer = PortalAvailability::Answer;
    QTest::newRow("there from the start") << true << false << Answer::Present << Answer::Present;
    QTest::newRow("never there") << false << false << Answer::Absent << Answer::Absent;
    QTest::newRow("starts later") << false << true << Answer::Absent << Answer::Present;
}

void TestPortalSampler::portalLookedForOnce()
{
    // Asked of the bus itself, so a missing portal costs no call that waits
    // to time out; answered once, and a portal that starts later noticed.
    QFETCH(bool, onBusAtStart);
    QFETCH(bool, registersLater);
    QFETCH(PortalAvailability::Answer, firstAnswer);
    QFETCH(PortalAvailability::Answer, laterAnswer);

    FakeScreenshotPortal portal(portalBus(), Mode::Color);
    if (onBusAtStart)
        QVERIFY(portal.registerOnBus());
    const QString address = m_bus->address();
    const QString name = QStringLiteral("availability-%1").arg(++m_connections);
    PortalAvailability availability([address, name] { return QDBusConnection::connectToBus(address, name); });
    QSignalSpy answered(&availability, &PortalAvailability::answered);
    QCOMPARE(availability.answer(), PortalAvailability::Answer::Unknown);
    QVERIFY(answered.wait(2000));
    QCOMPARE(availability.answer(), firstAnswer);
    if (registersLater)
        QVERIFY(portal.registerOnBus());
    QTRY_COMPARE(availability.answer(), laterAnswer);
    QCOMPARE(answered.size(), 1);
    QVERIFY(portal.tokens.isEmpty());
}

QTEST_MAIN(TestPortalSampler)
#include "tst_portalsampler.moc"
