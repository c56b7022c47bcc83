#include "FakeScreenshotPortal.h"
#include "PrivateSessionBus.h"
#include "support/StdoutCapture.h"

#include "picking/FallbackColorSampler.h"
#include "picking/LoupeColorSampler.h"
#include "picking/PortalColorSampler.h"
#include "picking/PrecisionColorPicker.h"
#include "picking/PrecisionColorPickerView.h"
#include "picking/TintwrightService.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>

using Mode = FakeScreenshotPortal::Mode;
Q_DECLARE_METATYPE(FakeScreenshotPortal::Mode)

namespace {

// What a sampler reported, in order.
struct Outcome
{
    QList<SampledColor> colors;
    int cancels = 0;
    QStringList failures;
    int total() const { return int(colors.size()) + cancels + int(failures.size()); }
};

void record(FallibleColorSampler *sampler, Outcome &outcome)
{
    QObject::connect(sampler, &ColorSampler::colorSampled,
                     [&outcome](const SampledColor &color) { outcome.colors.append(color); });
    QObject::connect(sampler, &ColorSampler::cancelled, [&outcome] { ++outcome.cancels; });
    QObject::connect(sampler, &FallibleColorSampler::failed,
                     [&outcome](const QString &reason) { outcome.failures.append(reason); });
}

// Stands in for the loupe where the screen cannot be read (Wayland).
class UnreadableScreenSampler : public FallibleColorSampler
{
public:
    using FallibleColorSampler::FallibleColorSampler;
    void start() override
    {
        QTimer::singleShot(0, this, [this] { emit failed(QStringLiteral("the screen cannot be read")); });
    }
};

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
    void serviceAbsentFallsBackToLoupe();
    void nothingWorksEndsAsCancelWithOneLine();
    void serviceTakesPortalColor();

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
    QCOMPARE(portal.predictedPaths.first(),
             PortalColorSampler::requestPath(bus, portal.tokens.first()));
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

void TestPortalSampler::serviceAbsentFallsBackToLoupe()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        QSKIP("the loupe needs an X display");
    QDBusConnection bus = clientBus();
    LoupeColorSampler *loupe = nullptr;
    FallbackColorSampler sampler({
        [bus](QObject *owner) -> FallibleColorSampler * { return new PortalColorSampler(bus, owner); },
        [&loupe](QObject *owner) -> FallibleColorSampler * { return loupe = new LoupeColorSampler(owner); },
    });
    QSignalSpy sampled(&sampler, &ColorSampler::colorSampled);
    QSignalSpy cancelled(&sampler, &ColorSampler::cancelled);
    StdoutCapture output;
    sampler.start();
    QTRY_VERIFY(loupe && loupe->picker() && loupe->picker()->isRunning());
    PrecisionColorPickerView *view = loupe->picker()->pickerView();
    QVERIFY(QTest::qWaitForWindowExposed(view));
    QTest::keyClick(view, Qt::Key_Escape);
    QTRY_COMPARE(cancelled.size(), 1);
    QCOMPARE(sampled.size(), 0);
    // A working fallback is not a failure worth a line.
    QCOMPARE(output.text(), QByteArray());
}

void TestPortalSampler::nothingWorksEndsAsCancelWithOneLine()
{
    QDBusConnection bus = clientBus();
    FallbackColorSampler sampler({
        [bus](QObject *owner) -> FallibleColorSampler * { return new PortalColorSampler(bus, owner); },
        [](QObject *owner) -> FallibleColorSampler * {
            return new UnreadableScreenSampler(owner);
        },
    });
    QSignalSpy cancelled(&sampler, &ColorSampler::cancelled);
    StdoutCapture output;
    sampler.start();
    QTRY_COMPARE(cancelled.size(), 1);
    const QByteArray text = output.text();
    QCOMPARE(text.count('\n'), 1);
    QVERIFY2(text.startsWith("Cannot pick a color: no desktop portal color picker"), text.constData());
    QVERIFY2(text.contains("the screen cannot be read"), text.constData());
}

void TestPortalSampler::serviceTakesPortalColor()
{
    FakeScreenshotPortal portal(portalBus(), Mode::Color, {1.0, 0.0, 0.0});
    QVERIFY(portal.registerOnBus());
    QDBusConnection bus = clientBus();
    TintwrightService service;
    service.setSamplerFactory([bus](QObject *parent) -> ColorSampler * {
        return new PortalColorSampler(bus, parent);
    });
    const ColorItem white = *service.pickedColor();
    QSignalSpy finished(&service, &TintwrightService::pickFinished);
    service.pickColor();
    QVERIFY(service.isPicking());
    QTRY_COMPARE(finished.size(), 1);
    QVERIFY(!service.isPicking());
    const ColorItem picked = *service.pickedColor();
    QCOMPARE(picked.name, QStringLiteral("Picked Color"));
    QVERIFY(picked.red == 1.0 && picked.green == 0.0 && picked.blue == 0.0 && picked.alpha == 1.0);
    QVERIFY(picked.id != white.id);
}

QTEST_MAIN(TestPortalSampler)
#include "tst_portalsampler.moc"
