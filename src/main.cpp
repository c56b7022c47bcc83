#include "app/ClipboardHandOff.h"
#include "app/CommandLine.h"
#include "app/ContrastCommand.h"
#include "app/PickCommand.h"
#include "app/SingleInstance.h"
#include "app/TintwrightApp.h"
#include "storage/DataLocation.h"

#include <QApplication>
#include <QDBusConnection>

#include <csignal>
#include <cstdio>
#include <memory>

int main(int argc, char *argv[])
{
    // Over a file size limit (ulimit -f) a write fails with EFBIG, which a
    // save reports; left at its default, the signal would kill the program.
    std::signal(SIGXFSZ, SIG_IGN);

    QCoreApplication::setApplicationName(QStringLiteral("Tintwright"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TINTWRIGHT_VERSION));
    CommandLine command;
    if (argc > 1) {
        // Read before any display is opened: --help works on a console. A
        // plain launch has nothing to read, and its window no time to lose.
        QCoreApplication reader(argc, argv);
        command = CommandLine::parse(reader.arguments());
    }
    if (command.action == CommandLine::Action::Contrast)
        return ContrastCommand::run(command.foreground, command.background, command.required);
    if (command.action == CommandLine::Action::Exit) {
        std::fputs(command.message.toLocal8Bit().constData(), command.exitCode == 0 ? stdout : stderr);
        return command.exitCode;
    }

    QApplication application(argc, argv);
    if (command.action == CommandLine::Action::ServeClipboard)
        return ClipboardHandOff::keep(command.clipboardText);

    const QString dataFolder = DataLocation::defaultFolder();
    if (command.action == CommandLine::Action::Pick)
        return PickCommand(dataFolder, command.notation, command.copy).run();

    // One process per data folder: a second one would overwrite the first
    // one's palettes. A later launch brings the running window forward.
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
    QObject::connect(&instance, &SingleInstance::pickRequested, &application,
                     [&app](Notation notation, bool copy, const SingleInstance::PickAnswer &answer) {
                         app.pickOnRequest(notation, copy, answer);
                     });
    app.show();
    app.listenForGlobalShortcut(QDBusConnection::sessionBus());
    return application.exec();
}
