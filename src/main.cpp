#include "app/SingleInstance.h"
#include "app/TintwrightApp.h"
#include "storage/DataLocation.h"

#include <QApplication>

#include <csignal>
#include <cstdio>

int main(int argc, char *argv[])
{
    // Over a file size limit (ulimit -f) a write fails with EFBIG, which a
    // save reports; left at its default, the signal would kill the program.
    std::signal(SIGXFSZ, SIG_IGN);

    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tintwright"));
    QApplication::setApplicationVersion(QStringLiteral(TINTWRIGHT_VERSION));

    // One process per data folder: a second one would overwrite the first
    // one's palettes. A later launch brings the running window forward.
    const QString dataFolder = DataLocation::defaultFolder();
    SingleInstance instance(dataFolder);
    switch (instance.claimOrHandOver()) {
    case SingleInstance::Outcome::HandedOver:
        return 0;
    case SingleInstance::Outcome::NoAnswer:
        std::fprintf(stderr, "Tintwright is already running but does not answer.\n");
        return 1;
    case SingleInstance::Outcome::Primary:
        break;
    }

    TintwrightApp app(dataFolder);
    QObject::connect(&instance, &SingleInstance::activationRequested, &application,
                     [&app](const QString &token) { app.bringToFront(token); });
    app.show();
    return application.exec();
}
