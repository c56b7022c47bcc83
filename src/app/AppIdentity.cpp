#include "AppIdentity.h"

#include "AccessibleWidgets.h"

#include <QApplication>
#include <QIcon>

namespace AppIdentity {

QString applicationId()
{
    return QStringLiteral("io.github.tintwright.Tintwright");
}

void apply()
{
    QGuiApplication::setDesktopFileName(applicationId());
    // The built-in copy is the installed icon's drawing; looking the theme
    // up first would cost a few milliseconds before the first frame.
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/tintwright/app-icon.svg")));
    AccessibleWidgets::install();
}

} // namespace AppIdentity
