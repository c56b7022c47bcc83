// How soon a pick shows: the whole program (its composition root, the
// window, the picking service) in this process, "Pick Color" clicked by
// xdotool through the X server, and for each pick the time from the click
// (the button's release arriving) to the first frame of the loupe:
// painted and flushed to the X server. With a fake
// portal on the bus the loupe never opens; the figures are then the time
// to the portal's request (stamped by the portal process) and to the color
// arriving. Each loupe is cancelled with Escape before the next pick.
// Prints one line per pick: "pick <n> <what> <ms>".
// Usage: bench_pick_latency [picks] [fake-portal-program]

#include "app/TintwrightApp.h"
#include "picking/LoupeOverlay.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <QElapsedTimer>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <functional>
#include <optional>

namespace {

using Clock = std::chrono::steady_clock;

double msBetween(Clock::time_point from, Clock::time_point to)
{
    return std::chrono::duration<double, std::milli>(to - from).count();
}

LoupeOverlay *shownOverlay()
{
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        if (auto *overlay = qobject_cast<LoupeOverlay *>(window); overlay && overlay->isVisible())
            return overlay;
    }
    return nullptr;
}

// Stamps the click and the first frame of a loupe overlay as the event
// loop delivers them.
class TimedApplication : public QApplication
{
public:
    using QApplication::QApplication;

    QObject *button = nullptr;
    std::optional<Clock::time_point> clickAt;
    std::optional<Clock::time_point> frameAt;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (receiver == button && event->type() == QEvent::MouseButtonRelease && !clickAt)
            clickAt = Clock::now();
        // Each overlay says when its first frame is flushed.
        if (auto *overlay = qobject_cast<LoupeOverlay *>(receiver); overlay && !watched.contains(overlay)) {
            watched.append(overlay);
            connect(overlay, &LoupeOverlay::firstFrameShown, this, [this] {
                if (clickAt && !frameAt)
                    frameAt = Clock::now();
            });
        }
        return QApplication::notify(receiver, event);
    }

private:
    QList<QPointer<LoupeOverlay>> watched;
};

// Waits for the condition, handling events as they come: QTest::qWaitFor
// sleeps 10 ms between looks, which would be most of what is measured.
bool waitUntil(const std::function<bool()> &condition, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    QTimer wake; // so that the wait for events ends now and then
    wake.start(5);
    while (!condition()) {
        if (timer.hasExpired(timeoutMs))
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    TimedApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    const int picks = arguments.size() > 1 ? arguments[1].toInt() : 6;
    const QString portalProgram = arguments.size() > 2 ? arguments[2] : QString();

    QProcess portal;
    QList<Clock::time_point> requests;
    if (!portalProgram.isEmpty()) {
        portal.start(portalProgram, {});
        if (!portal.waitForReadyRead(5000) || !portal.readLine().startsWith("ready")) {
            std::fprintf(stderr, "the fake portal did not start\n");
            return 1;
        }
        QObject::connect(&portal, &QProcess::readyReadStandardOutput, [&] {
            while (portal.canReadLine()) {
                const QList<QByteArray> words = portal.readLine().trimmed().split(' ');
                if (words.size() == 2 && words[0] == "request")
                    requests.append(Clock::time_point(std::chrono::nanoseconds(words[1].toLongLong())));
            }
        });
    }

    QTemporaryDir data;
    TintwrightApp tintwright(data.path());
    tintwright.show();
    if (!QTest::qWaitForWindowExposed(&tintwright.window())) {
        std::fprintf(stderr, "the window did not show\n");
        return 1;
    }
    QPushButton *pickButton = nullptr;
    for (int i = 0; i < 100 && !pickButton; ++i) {
        for (auto *button : tintwright.window().findChildren<QPushButton *>()) {
            if (button->text() == QLatin1String("Pick Color") && button->isVisible())
                pickButton = button;
        }
        if (!pickButton)
            QTest::qWait(10);
    }
    if (!pickButton) {
        std::fprintf(stderr, "no Pick Color button\n");
        return 1;
    }
    app.button = pickButton;
    // Settled, as a user would find it: first frame drawn, start-up done.
    QTest::qWait(500);
    // A Wayland client cannot be clicked from outside where it is: there
    // the click is the program's own, through the same event delivery.
    const bool wayland = QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    const QPoint centre = pickButton->mapToGlobal(pickButton->rect().center());
    if (!wayland)
        QProcess::execute(QStringLiteral("xdotool"),
                          {QStringLiteral("mousemove"), QStringLiteral("--sync"), QString::number(centre.x()),
                           QString::number(centre.y())});
    QTest::qWait(100);

    TintwrightService &service = tintwright.tintwrightService();
    for (int pick = 1; pick <= picks; ++pick) {
        app.clickAt.reset();
        app.frameAt.reset();
        requests.clear();
        std::optional<Clock::time_point> colorAt;
        const auto colorConnection = QObject::connect(&service, &TintwrightService::pickedColorChanged,
                                                      [&] { colorAt = Clock::now(); });
        if (wayland)
            QTest::mouseClick(pickButton, Qt::LeftButton);
        else
            QProcess::startDetached(QStringLiteral("xdotool"),
                                    {QStringLiteral("click"), QStringLiteral("1")});
        const bool shown = waitUntil(
            [&] { return app.frameAt.has_value() || (colorAt.has_value() && !service.isPicking()); }, 10000);
        QObject::disconnect(colorConnection);
        if (!shown || !app.clickAt) {
            std::fprintf(stderr, "pick %d: nothing showed\n", pick);
            return 1;
        }
        if (app.frameAt) {
            std::printf("pick %d loupe-frame %.2f\n", pick, msBetween(*app.clickAt, *app.frameAt));
            QTest::keyClick(shownOverlay(), Qt::Key_Escape);
        } else {
            QTest::qWait(20); // the portal's line may trail its answer
            if (!requests.isEmpty())
                std::printf("pick %d portal-request %.2f\n", pick, msBetween(*app.clickAt, requests.first()));
            std::printf("pick %d portal-color %.2f\n", pick, msBetween(*app.clickAt, *colorAt));
        }
        std::fflush(stdout);
        if (!QTest::qWaitFor([&] { return !service.isPicking() && !shownOverlay(); }, 5000)) {
            std::fprintf(stderr, "pick %d did not end\n", pick);
            return 1;
        }
        // The window back on screen before the next capture.
        QTest::qWait(300);
    }
    if (portal.state() != QProcess::NotRunning) {
        portal.terminate();
        portal.waitForFinished(2000);
    }
    return 0;
}
