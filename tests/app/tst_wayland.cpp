#include "support/AppFixture.h"
#include "support/FakePortal.h"

#include "model/ColorFormats.h"
#include "model/Notation.h"
#include "ui/AddColorSheet.h"
#include "ui/AddToPaletteFlow.h"
#include "ui/PickerTab.h"

#include "picking/LoupeOverlay.h"
#include <QDBusConnection>
#include <QEnterEvent>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

// The window as a client of a real Wayland compositor, on a session bus of
// its own: what a compositor decides (placement, decorations, the
// clipboard, reading the screen) differs from X11.
class TestWayland : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCOMPARE(QGuiApplication::platformName(), QStringLiteral("wayland"));
        QVERIFY(QTest::qWaitForWindowExposed(&m_fixture->window()));
    }

    void windowAndDialog()
    {
        MainWindow &window = m_fixture->window();
        QCOMPARE(window.size(), QSize(300, 400));
        // Qt draws no decorations of its own around a frameless window.
        QCOMPARE(window.windowHandle()->frameMargins(), QMargins());
        // A Wayland client cannot place a window: a dialog shows over its
        // window only as the compositor's transient child of it.
        m_fixture->palettes().createPalette(QStringLiteral("Brand"));
        picker()->showAddSheet();
        QDialog *sheet = picker()->addToPalette().sheet();
        QVERIFY(QTest::qWaitForWindowExposed(sheet));
        QCOMPARE(sheet->windowHandle()->transientParent(), window.windowHandle());
        QCOMPARE(sheet->windowModality(), Qt::WindowModal);
        sheet->close();
    }

    void pickWithoutAndWithThePortal()
    {
        // No portal: no overlay, and one line in the tab says why.
        QSignalSpy finished(&m_fixture->app.tintwrightService(), &TintwrightService::pickFinished);
        m_fixture->app.tintwrightService().setSamplerFactory({});
        picker()->pickColor();
        QVERIFY(finished.wait(5000));
        const PickResult result = finished.last().first().value<PickResult>();
        QCOMPARE(result.outcome, PickResult::Outcome::Unavailable);
        for (QWindow *window : QGuiApplication::topLevelWindows())
            QVERIFY(!window->isVisible() || window == m_fixture->window().windowHandle());
        int saying = 0;
        for (QLabel *label : picker()->findChildren<QLabel *>())
            saying += label->isVisible() && label->toolTip() == result.reason;
        QCOMPARE(saying, 1);

        // With the portal: its color, copied through the compositor.
        FakePortal portal(QDBusConnection::sessionBus());
        QVERIFY(portal.registerOnBus());
        picker()->pickColor();
        QVERIFY(finished.wait(5000));
        QCOMPARE(portal.tokens.size(), 1);
        const std::optional<ColorItem> picked = m_fixture->app.tintwrightService().pickedColor();
        QVERIFY(picked && picked->red == 0.2);
        const QList<QPushButton *> buttons = picker()->findChildren<QPushButton *>();
        const auto copyHex = std::find_if(buttons.begin(), buttons.end(), [](QPushButton *button) {
            return button->accessibleName() == QLatin1String("Copy HEX");
        });
        QVERIFY(copyHex != buttons.end());
        QTest::mouseClick(*copyHex, Qt::LeftButton);
        // Read while this process keeps serving its event loop: the paste asks
        // it for the text through the compositor.
        QProcess paste;
        paste.start(QStringLiteral("wl-paste"), {QStringLiteral("--no-newline")});
        QTRY_COMPARE_WITH_TIMEOUT(paste.state(), QProcess::NotRunning, 5000);
        QCOMPARE(QString::fromUtf8(paste.readAllStandardOutput()),
                 hexString(picked->red, picked->green, picked->blue));
    }

    // `tintwright --pick` alone on Wayland: the color printed, and the
    // clipboard handed to wl-copy, since the command is gone at once; one
    // line on standard error when wl-copy is missing.
    void pickCommandCopiesThroughWlCopy()
    {
        FakePortal portal(QDBusConnection::sessionBus());
        QVERIFY(portal.registerOnBus());
        for (const bool withWlCopy : {true, false}) {
            QTemporaryDir data, tools;
            // Without wl-copy: a PATH with nothing to run.
            const QString path = withWlCopy ? qEnvironmentVariable("PATH") : tools.path();
            QProcess command;
            command.start("env",
                          {"XDG_DATA_HOME=" + data.path(), "PATH=" + path, TINTWRIGHT_BINARY, "--pick"});
            // Served by this process's portal meanwhile.
            QTRY_VERIFY_WITH_TIMEOUT(command.state() == QProcess::NotRunning, 10000);
            QCOMPARE(command.exitCode(), 0);
            QCOMPARE(command.readAllStandardOutput(), QByteArray("#3366CC\n"));
            const QByteArray errors = command.readAllStandardError();
            QCOMPARE(errors.count('\n'), withWlCopy ? 0 : 1);
            QVERIFY(withWlCopy || errors.contains("clipboard was not set"));
        }
        QProcess paste;
        paste.start(QStringLiteral("wl-paste"), {QStringLiteral("--no-newline")});
        QVERIFY(paste.waitForFinished(5000));
        QCOMPARE(paste.readAllStandardOutput(), QByteArray("#3366CC"));
    }

    // The loupe over the portal's screenshot, full screen: a click picks the
    // device pixel of the picture under the pointer, at the output's scale.
    void loupeOverScreenshot()
    {
        if (qEnvironmentVariableIsSet("WESTON_OUTPUTS"))
            QCOMPARE(QGuiApplication::screens().size(), qEnvironmentVariableIntValue("WESTON_OUTPUTS"));
        // One picture of the whole layout, as the portal gives it.
        QRect layout;
        for (const QScreen *screen : QGuiApplication::screens())
            layout |= screen->geometry();
        const double ratio = QGuiApplication::primaryScreen()->devicePixelRatio();
        QImage picture(layout.size() * ratio, QImage::Format_RGB32);
        const auto pixelAt = [](int x, int y) {
            return qRgb(x & 0xff, y & 0xff, 0x80 | ((x >> 8) & 0xf) | ((y >> 8) << 4));
        };
        const auto hexAt = [&](int x, int y) { return QColor(pixelAt(x, y)).name().toUpper(); };
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                picture.setPixel(x, y, pixelAt(x, y));
        }
        QTemporaryDir folder;
        FakePortal portal(QDBusConnection::sessionBus());
        portal.screenshotFile = folder.filePath(QStringLiteral("shot.png"));
        QVERIFY(picture.save(portal.screenshotFile));
        QVERIFY(portal.registerOnBus());

        TintwrightService service;
        QSignalSpy finished(&service, &TintwrightService::pickFinished);
        const auto picked = [&] {
            const PickResult result = finished.last().first().value<PickResult>();
            return result.isPicked() ? Notations::text(Notation::Hex, result.colors.last().rgb()) : QString();
        };
        service.pickColor();
        QTRY_COMPARE(visibleOverlays().size(), QGuiApplication::screens().size());
        QVERIFY(portal.tokens.isEmpty()); // not the portal's own picker
        // Real input through Weston, whose X11 backend moves its pointer by
        // the X pointer's moves: taken into a corner first, where the two agree.
        auto *loupe = static_cast<LoupeOverlay *>(visibleOverlays().first());
        QTRY_VERIFY(loupe->isExposed());
        const QPoint at(601, 503);
        for (const QPoint to : {QPoint(5, 5), QPoint(0, 0), at}) {
            QVERIFY(xdotool({"mousemove", QString::number(to.x()), QString::number(to.y())}));
            QTest::qWait(50);
        }
        // Which output's window lies at the X corner is the X server's
        // choice: the pointer is at `at` on that output.
        QPoint pointer;
        QTRY_VERIFY([&] {
            pointer = (loupe->cursorPosition() * ratio).toPoint();
            const QScreen *on = QGuiApplication::screenAt(loupe->cursorPosition().toPoint());
            return on && pointer - (on->geometry().topLeft() - layout.topLeft()) * ratio == at;
        }());
        QCOMPARE(loupe->readout(), hexAt(pointer.x(), pointer.y()));
        QVERIFY(xdotool({"click", "1"}));
        QTRY_COMPARE(finished.size(), 1);
        QCOMPARE(picked(), hexAt(pointer.x(), pointer.y()));

        // Each further output: its own part of the picture.
        for (QScreen *screen : QGuiApplication::screens().mid(1)) {
            service.pickColor();
            QTRY_COMPARE(visibleOverlays().size(), QGuiApplication::screens().size());
            QWindow *overlay = nullptr;
            for (QWindow *shown : visibleOverlays())
                overlay = shown->screen() == screen ? shown : overlay;
            QVERIFY(overlay);
            QTRY_VERIFY(overlay->isExposed());
            const QPointF point = QPointF(301.25, 203.25) / ratio;
            QMouseEvent press(QEvent::MouseButtonPress, point, overlay->mapToGlobal(point), Qt::LeftButton,
                              Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(overlay, &press);
            QTRY_COMPARE(finished.size(), 2);
            const QPoint origin = (screen->geometry().topLeft() - layout.topLeft()) * ratio;
            QCOMPARE(picked(), hexAt(origin.x() + 301, origin.y() + 203));
        }
    }

    void backgroundDragMovesTheWindow()
    {
        PointerWatch watch(m_fixture->window().windowHandle());
        // Where the pointer is seen after it moved there; only this move counts.
        auto seenAfterMoveTo = [&watch](QPoint at) -> std::optional<QPointF> {
            QTest::qWait(20);
            watch.seenAt.reset();
            if (!xdotool({"mousemove", QString::number(at.x()), QString::number(at.y())}))
                return std::nullopt;
            QTest::qWait(30);
            return watch.seenAt;
        };
        // The compositor keeps the window's place to itself: sweep the pointer
        // until the window sees it, and sees a second move follow.
        std::optional<QPoint> origin;
        for (int y = 50; y < 800 && !origin; y += 350) {
            for (int x = 50; x < 1280 && !origin; x += 250) {
                const std::optional<QPointF> seen = seenAfterMoveTo({x, y});
                if (seen && seenAfterMoveTo({x + 2, y + 2}) == *seen + QPointF(2, 2))
                    origin = QPoint(x, y) - seen->toPoint();
            }
        }
        QVERIFY(origin);
        // Pressed on the background, dragged, let go: the window follows, so
        // the pointer is still where it was pressed.
        const QPoint pressed(150, 396);
        QVERIFY(seenAfterMoveTo(*origin + pressed));
        QVERIFY(xdotool({"mousedown", "1"}));
        for (int step = 0; step < 8; ++step) {
            QTest::qWait(20);
            QVERIFY(xdotool({"mousemove_relative", "20", "10"}));
        }
        QVERIFY(xdotool({"mouseup", "1"}));
        QTest::qWait(50);
        watch.seenAt.reset();
        QVERIFY(xdotool({"mousemove_relative", "--", "-1", "0"}));
        QTRY_VERIFY_WITH_TIMEOUT(watch.seenAt.has_value(), 2000);
        QCOMPARE(watch.seenAt->toPoint(), pressed - QPoint(1, 0));
    }

private:
    static QList<QWindow *> visibleOverlays()
    {
        QList<QWindow *> overlays;
        for (QWindow *window : QGuiApplication::topLevelWindows()) {
            if (window->isVisible() && window->title() == QLatin1String("Precision color picker"))
                overlays.append(window);
        }
        return overlays;
    }
    PickerTab *picker() { return m_fixture->show<PickerTab>(MenuTab::Picker); }

    // Real pointer input through the X server Weston runs in, so that the
    // compositor sees it (and the window's move has the serial it needs).
    static bool xdotool(const QStringList &arguments)
    {
        QProcess tool;
        tool.start("env",
                   QStringList{"DISPLAY=" + qEnvironmentVariable("TINTWRIGHT_INPUT_DISPLAY"), "xdotool"}
                       + arguments);
        return tool.waitForFinished(5000) && tool.exitCode() == 0;
    }

    // Where the pointer was last seen over a window, in its own coordinates.
    struct PointerWatch : QObject
    {
        explicit PointerWatch(QWindow *window) { window->installEventFilter(this); }
        std::optional<QPointF> seenAt;
        bool eventFilter(QObject *watched, QEvent *event) override
        {
            if (event->type() == QEvent::Enter)
                seenAt = static_cast<QEnterEvent *>(event)->position();
            else if (event->type() == QEvent::MouseMove)
                seenAt = static_cast<QMouseEvent *>(event)->position();
            return QObject::eventFilter(watched, event);
        }
    };

    std::unique_ptr<AppFixture> m_fixture = std::make_unique<AppFixture>();
};

QTEST_MAIN(TestWayland)
#include "tst_wayland.moc"
