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
    const QIcon builtIn(QStringLiteral(":/tintwright/app-icon.svg"));
    QApplication::setWindowIcon(QIcon::fromTheme(applicationId(), builtIn));
    AccessibleWidgets::install();
}

} // namespace AppIdentity
