#include "TintwrightApp.h"

#include "AccessibleTabButton.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QIcon>

TintwrightApp::TintwrightApp(const QString &dataFolder)
    : m_paletteStorage(dataFolder)
    , m_historyStorage(dataFolder)
{
    QGuiApplication::setDesktopFileName(applicationId());
    // The built-in copy is the installed icon's drawing; looking the theme
    // up first would cost a few milliseconds before the first frame.
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/tintwright/app-icon.svg")));
    AccessibleTabButton::install();

    // A pick that ends, chosen or cancelled, puts the color the service
    // then holds first in the history, whichever tab is showing by then.
    QObject::connect(&m_tintwrightService, &TintwrightService::pickFinished, &m_historyStorage, [this] {
        if (const std::optional<ColorItem> picked = m_tintwrightService.pickedColor())
            m_historyStorage.addColor(*picked);
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
