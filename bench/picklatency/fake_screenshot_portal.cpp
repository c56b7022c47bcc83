// The fake screenshot portal as a process of its own, for runs of the real
// program (the pick benchmark): owns the portal's name on
// the session bus and answers every PickColor with one color. Prints
// "ready" once it is on the bus, then "request <ns>" for each PickColor,
// the time on the monotonic clock that std::chrono::steady_clock reads.
// With FAKE_SCREENSHOT naming a picture, it answers Screenshot with it too.
// Usage: fake_screenshot_portal [red green blue [delay-ms]]
//        (components 0..1, default 0.2 0.4 0.8; the answer after 0 ms)

#include "support/FakePortal.h"

#include <QCoreApplication>
#include <QDBusConnection>

#include <chrono>
#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments().mid(1);
    FakePortal portal(QDBusConnection::sessionBus());
    for (int i = 0; i < 3 && arguments.size() >= 3; ++i)
        portal.color[i] = arguments[i].toDouble();
    portal.answerDelay = arguments.size() >= 4 ? arguments[3].toInt() : 0;
    portal.screenshotFile = qEnvironmentVariable("FAKE_SCREENSHOT");
    QObject::connect(&portal, &FakePortal::pickColorCalled, [] {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        std::printf(
            "request %lld\n",
            static_cast<long long>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count()));
        std::fflush(stdout);
    });
    if (!portal.registerOnBus()) {
        std::fprintf(stderr, "cannot own the portal's name on the session bus\n");
        return 1;
    }
    std::printf("ready\n");
    std::fflush(stdout);
    return app.exec();
}
