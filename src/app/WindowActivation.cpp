#include "WindowActivation.h"

#include <QGuiApplication>
#include <QWidget>

namespace WindowActivation {

void bringToFront(QWidget *window, const QString &activationToken)
{
    if (!window)
        return;
    // The Wayland platform plugin consumes this variable on the next
    // activation request.
    if (!activationToken.isEmpty() && QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
}

} // namespace WindowActivation
