#include "app/AppIdentity.h"
#include "app/SingleInstance.h"
#include "app/WindowActivation.h"
#include "storage/DataLocation.h"
#include "ui/TintwrightApp.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tintwright"));
    QApplication::setApplicationVersion(QStringLiteral(TINTWRIGHT_VERSION));
    AppIdentity::apply();

    // One process per data folder: a second one would overwrite the first
    // one's palettes. A later launch brings the running window forward.
    SingleInstance instance(DataLocation::defaultFolder());
    switch (instance.claimOrHandOver()) {
    case SingleInstance::Outcome::HandedOver:
        return 0;
    case SingleInstance::Outcome::NoAnswer:
        std::fprintf(stderr, "Tintwright is already running but does not answer.\n");
        return 1;
    case SingleInstance::Outcome::Primary:
        break;
    }

    TintwrightApp app;
    QObject::connect(&instance, &SingleInstance::activationRequested, &application,
                     [&app](const QString &token) { WindowActivation::bringToFront(app.window(), token); });
    app.show();
    return application.exec();
}
