#include "PickCommand.h"

#include "ClipboardHandOff.h"
#include "picking/TintwrightService.h"
#include "storage/HistoryStorage.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QProcess>

#include <cstdio>

#include <unistd.h>

namespace {

void complain(const QString &line)
{
    std::fprintf(stderr, "tintwright: %s\n", line.toLocal8Bit().constData());
}

QString unavailableLine(const QString &reason)
{
    return QStringLiteral("no way to pick a color here (%1); on Wayland picking needs the desktop portal's "
                          "Screenshot interface (xdg-desktop-portal with a backend that offers it)")
        .arg(reason);
}

} // namespace

PickCommand::PickCommand(const QString &dataFolder, Notation notation, bool copy)
    : m_dataFolder(dataFolder)
    , m_notation(notation)
    , m_copy(copy)
{
}

int PickCommand::run()
{
    // The picked text is the only thing on standard output: what the rest
    // of the program prints goes to standard error meanwhile.
    std::fflush(stdout);
    m_output = ::dup(STDOUT_FILENO);
    ::dup2(STDERR_FILENO, STDOUT_FILENO);

    SingleInstance instance(m_dataFolder);
    SingleInstance::PickReply reply;
    switch (instance.claimOrAskToPick(m_notation, m_copy, &reply)) {
    case SingleInstance::Outcome::HandedOver:
        return report(reply);
    case SingleInstance::Outcome::NoAnswer:
        complain(QStringLiteral("Tintwright is already running but does not answer."));
        return cancelled;
    case SingleInstance::Outcome::Primary:
        break;
    }
    return pickHere(instance);
}

int PickCommand::pickHere(SingleInstance &instance)
{
    // A window launched during the pick opens once the pick is over; a
    // second command is told this one is picking.
    bool windowAsked = false;
    QString activationToken;
    QObject::connect(&instance, &SingleInstance::activationRequested, &instance, [&](const QString &token) {
        windowAsked = true;
        activationToken = token;
    });
    QObject::connect(&instance, &SingleInstance::pickRequested, &instance,
                     [](Notation, bool, const SingleInstance::PickAnswer &answer) {
                         answer({true, {}});
                     });

    TintwrightService service;
    HistoryStorage history(m_dataFolder);
    QEventLoop loop;
    PickResult result;
    QObject::connect(&service, &TintwrightService::pickFinished, &loop, [&](const PickResult &finished) {
        result = finished;
        // A command shows no color before its pick, so a cancel records nothing.
        for (const ColorItem &color : finished.colors)
            history.addColor(color);
        loop.quit();
    });
    service.pickColor();
    loop.exec();

    const int code = report({false, result});
    QString whyNot;
    if (code == picked && m_copy
        && !ClipboardHandOff::handOff(Notations::text(m_notation, result.colors.last().rgb()), &whyNot))
        complain(QStringLiteral("the clipboard was not set: ") + whyNot);
    if (windowAsked) {
        instance.close();
        QProcess window;
        window.setProgram(QCoreApplication::applicationFilePath());
        if (!activationToken.isEmpty())
            qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
        window.setStandardOutputFile(QProcess::nullDevice());
        window.setStandardErrorFile(QProcess::nullDevice());
        window.startDetached();
    }
    return code;
}

int PickCommand::report(const SingleInstance::PickReply &reply)
{
    int code = cancelled;
    if (reply.busy) {
        complain(QStringLiteral("Tintwright is already picking a color."));
    } else if (reply.result.isPicked()) {
        QByteArray lines;
        for (const ColorItem &color : reply.result.colors)
            lines += Notations::text(m_notation, color.rgb()).toUtf8() + '\n';
        if (::write(m_output, lines.constData(), size_t(lines.size())) != lines.size())
            complain(QStringLiteral("cannot write the picked color"));
        code = picked;
    } else if (reply.result.outcome == PickResult::Outcome::Unavailable) {
        complain(unavailableLine(reply.result.reason));
        code = unavailable;
    } else if (!reply.result.reason.isEmpty()) {
        complain(reply.result.reason);
    }
    // Whoever reads the output has it all now, without waiting for the
    // clipboard to be handed on.
    ::close(m_output);
    m_output = -1;
    return code;
}
