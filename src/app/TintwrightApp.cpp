#include "TintwrightApp.h"

#include "AccessibleTabButton.h"
#include "GlobalPickShortcut.h"
#include "PickRecording.h"
#include "PickRun.h"
#include "ui/ClipboardWriter.h"
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

    PickRecording::recordPicks(m_tintwrightService, m_historyStorage,
                               PickRecording::Cancels::RecordShownColor);

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

void TintwrightApp::pickOnRequest(const QString &formatName, bool copy,
                                  const std::function<void(const QString &)> &answer)
{
    const std::optional<PickFormat> format = PickFormats::fromName(formatName);
    if (!format) {
        answer(QStringLiteral("unavailable no notation called ") + formatName);
        return;
    }
    auto *run = new PickRun(m_tintwrightService, *format, m_window.get());
    QObject::connect(run, &PickRun::finished, m_window.get(),
                     [copy, answer](PickRun::Outcome outcome, const QString &detail) {
                         switch (outcome) {
                         case PickRun::Outcome::Picked:
                             // Copied here: this process outlives the command.
                             if (copy)
                                 copyToClipboard(detail);
                             answer(QStringLiteral("picked ") + detail);
                             break;
                         case PickRun::Outcome::Cancelled:
                             answer(QStringLiteral("cancelled"));
                             break;
                         case PickRun::Outcome::Unavailable:
                             answer(QStringLiteral("unavailable ") + detail);
                             break;
                         case PickRun::Outcome::Busy:
                             answer(QStringLiteral("busy"));
                             break;
                         }
                     });
    run->start();
}

void TintwrightApp::listenForGlobalShortcut(const QDBusConnection &bus)
{
    m_globalShortcut = std::make_unique<GlobalPickShortcut>(bus);
    QObject::connect(m_globalShortcut.get(), &GlobalPickShortcut::activated, m_window.get(), [this] {
        auto *run = new PickRun(m_tintwrightService, PickFormat::Hex, m_window.get());
        QObject::connect(run, &PickRun::finished, m_window.get(),
                         [this](PickRun::Outcome outcome, const QString &detail) {
                             if (outcome != PickRun::Outcome::Picked)
                                 return;
                             copyToClipboard(detail);
                             bringToFront({});
                         });
        run->start();
    });
    m_globalShortcut->start();
}
