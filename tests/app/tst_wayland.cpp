#include "FakeScreenshotPortal.h"

#include "app/TintwrightApp.h"
#include "model/ColorFormats.h"
#include "ui/AddColorSheet.h"
#include "ui/AddToPaletteFlow.h"
#include "ui/MainWindow.h"
#include "ui/PickerTab.h"
#include "ui/TextPromptDialog.h"

#include <QAbstractButton>
#include <QDBusConnection>
#include <QLabel>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <algorithm>

// The whole window as a client of a real Wayland compositor, on a session
// bus of its own: what a compositor decides (placement, decorations, the
// clipboard, reading the screen) differs from X11.
class TestWayland : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCOMPARE(QGuiApplication::platformName(), QStringLiteral("wayland")); }

    void dialogsBelongToTheWindow_data()
    {
        QTest::addColumn<bool>("prompt");
        QTest::newRow("add-color sheet") << false;
        QTest::newRow("new-palette prompt") << true;
    }

    void dialogsBelongToTheWindow()
    {
        // A Wayland client cannot place a window: a dialog shows over its
        // window only as the compositor's transient child of it.
        QFETCH(bool, prompt);
        Fixture f;
        // Qt draws no decorations of its own around a frameless window.
        QCOMPARE(f.app.window().windowHandle()->frameMargins(), QMargins());
        QDialog *dialog = nullptr;
        if (prompt) {
            f.picker()->showNewPalettePrompt();
            dialog = f.picker()->newPalettePrompt();
        } else {
            f.app.paletteStorage().createPalette(QStringLiteral("Brand"));
            f.picker()->showAddSheet();
            dialog = f.picker()->addToPalette().sheet();
        }
        QVERIFY(dialog);
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
        QCOMPARE(dialog->windowHandle()->transientParent(), f.app.window().windowHandle());
        QCOMPARE(dialog->windowModality(), Qt::WindowModal);
        dialog->close();
    }

    void withoutPortalThePickSaysSo()
    {
        Fixture f;
        QSignalSpy unavailable(&f.app.tintwrightService(), &TintwrightService::pickUnavailable);
        QSignalSpy finished(&f.app.tintwrightService(), &TintwrightService::pickFinished);
        f.picker()->pickColor();
        QVERIFY(finished.wait(5000));
        QCOMPARE(unavailable.count(), 1);
        // No overlay: nothing could show what is on the screen.
        for (QWindow *window : QGuiApplication::topLevelWindows())
            QVERIFY(!window->isVisible() || window == f.app.window().windowHandle());
        // One line in the tab says why, the reason itself under it.
        const QString reason = f.app.tintwrightService().unavailableReason();
        QVERIFY(!reason.isEmpty());
        const QList<QLabel *> labels = f.picker()->findChildren<QLabel *>();
        QCOMPARE(
            std::count_if(labels.begin(), labels.end(),
                          [&](QLabel *label) { return label->isVisible() && label->toolTip() == reason; }),
            1);
    }

    void portalPickReachesTheClipboard()
    {
        FakeScreenshotPortal portal(QDBusConnection::sessionBus(), FakeScreenshotPortal::Mode::Color,
                                    {0.2, 0.4, 0.8});
        QVERIFY(portal.registerOnBus());
        Fixture f;
        QSignalSpy finished(&f.app.tintwrightService(), &TintwrightService::pickFinished);
        f.picker()->pickColor();
        QVERIFY(finished.wait(5000));
        QCOMPARE(portal.tokens.size(), 1);
        const std::optional<ColorItem> picked = f.app.tintwrightService().pickedColor();
        QVERIFY(picked);

        const QList<QAbstractButton *> buttons = f.picker()->findChildren<QAbstractButton *>();
        const auto copyHex = std::find_if(buttons.begin(), buttons.end(), [](QAbstractButton *button) {
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

private:
    struct Fixture
    {
        QTemporaryDir folder;
        TintwrightApp app{folder.path()};
        Fixture()
        {
            app.show();
            QVERIFY(QTest::qWaitForWindowExposed(&app.window()));
        }
        PickerTab *picker() { return qobject_cast<PickerTab *>(app.window().tab()); }
    };
};

QTEST_MAIN(TestWayland)
#include "tst_wayland.moc"
