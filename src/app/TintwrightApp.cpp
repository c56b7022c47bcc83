#include "TintwrightApp.h"

#include <cstdio>

#include "GlobalPickShortcut.h"
#include "ui/ClipboardWriter.h"
#include "ui/MainWindow.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QIcon>

TintwrightApp::TintwrightApp(const QString &dataFolder)
    : m_paletteStorage(dataFolder)
    , m_historyStorage(dataFolder)
{
    QGuiApplication::setDesktopFileName(applicationId());
    Theme::install();

    // A pick that ends puts the color then on show first in the history,
    // whichever tab is showing by then: a cancel puts the color shown before
    // it there again.
    QObject::connect(&m_tintwrightService, &TintwrightService::pickFinished, &m_historyStorage,
                     [this](const PickResult &result) {
                         for (const ColorItem &color : result.colors)
                             m_historyStorage.addColor(color);
                         // The one line a window says about it (a command says its own).
                         if (result.outcome == PickResult::Outcome::Unavailable) {
                             std::printf("Cannot pick a color: %s\n", result.reason.toUtf8().constData());
                             std::fflush(stdout);
                         }
                         if (!result.isPicked() && m_tintwrightService.pickedColor())
                             m_historyStorage.addColor(*m_tintwrightService.pickedColor());
                     });

    m_window = std::make_unique<MainWindow>(m_tintwrightService, m_paletteStorage, m_historyStorage,
                                            m_contrastStorage);
}

TintwrightApp::~TintwrightApp() = default;

QString TintwrightApp::applicationId()
{
    return QStringLiteral("io.github.tintwright.Tintwright");
}

void TintwrightApp::show()
{
    m_window->show();
    // The built-in copy is the installed icon's drawing; looking the theme
    // up first, or drawing it before the window maps, would cost a few
    // milliseconds before the first frame.
    QMetaObject::invokeMethod(
        m_window.get(),
        [] { QApplication::setWindowIcon(QIcon(QStringLiteral(":/tintwright/app-icon.svg"))); },
        Qt::QueuedConnection);
}

void TintwrightApp::bringToFront(const QString &activationToken)
{
    // The Wayland platform plugin consumes this variable on the next
    // activation request.
    if (!activationToken.isEmpty() && QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

void TintwrightApp::pick(const std::function<void(const PickResult &)> &done)
{
    QObject::connect(&m_tintwrightService, &TintwrightService::pickFinished, m_window.get(), done,
                     Qt::SingleShotConnection);
    m_tintwrightService.pickColor();
}

void TintwrightApp::pickOnRequest(Notation notation, bool copy, const SingleInstance::PickAnswer &answer)
{
    if (m_tintwrightService.isPicking()) {
        answer({true, {}});
        return;
    }
    pick([notation, copy, answer](const PickResult &result) {
        if (copy && result.isPicked())
            copyToClipboard(Notations::text(notation, result.colors.last().rgb()));
        answer({false, result});
    });
}

void TintwrightApp::listenForGlobalShortcut(const QDBusConnection &bus)
{
    m_globalShortcut = std::make_unique<GlobalPickShortcut>(bus);
    QObject::connect(m_globalShortcut.get(), &GlobalPickShortcut::activated, m_window.get(), [this] {
        if (m_tintwrightService.isPicking())
            return;
        pick([this](const PickResult &result) {
            if (!result.isPicked())
                return;
            copyToClipboard(Notations::text(Notation::Hex, result.colors.last().rgb()));
            bringToFront({});
        });
    });
    m_globalShortcut->start();
}
