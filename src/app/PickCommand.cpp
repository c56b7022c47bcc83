#include "PickCommand.h"

#include "ClipboardHandOff.h"
#include "PickRecording.h"
#include "PickRun.h"
#include "SingleInstance.h"
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

PickCommand::PickCommand(const QString &dataFolder, PickFormat format, bool copy)
    : m_dataFolder(dataFolder)
    , m_format(format)
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
    QString answer;
    switch (instance.claimOrAskToPick(PickFormats::name(m_format), m_copy, &answer)) {
    case SingleInstance::Outcome::HandedOver:
        return report(answer);
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
                     [](const QString &, bool, const SingleInstance::PickAnswer &answer) {
                         answer(QStringLiteral("busy"));
                     });

    TintwrightService service;
    HistoryStorage history(m_dataFolder);
    PickRecording::recordPicks(service, history, PickRecording::Cancels::RecordNothing);

    QEventLoop loop;
    QString answer;
    auto *pickRun = new PickRun(service, m_format);
    QObject::connect(pickRun, &PickRun::finished, &loop,
                     [&](PickRun::Outcome outcome, const QString &detail) {
                         switch (outcome) {
                         case PickRun::Outcome::Picked:
                             answer = QStringLiteral("picked ") + detail;
                             break;
                         case PickRun::Outcome::Unavailable:
                             answer = QStringLiteral("unavailable ") + detail;
                             break;
                         default:
                             answer = QStringLiteral("cancelled");
                             break;
                         }
                         loop.quit();
                     });
    pickRun->start();
    loop.exec();

    const int code = report(answer);
    if (code == picked && m_copy)
        ClipboardHandOff::handOff(answer.mid(answer.indexOf(u' ') + 1));
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

int PickCommand::report(const QString &answer)
{
    const qsizetype space = answer.indexOf(u' ');
    const QString kind = space < 0 ? answer : answer.left(space);
    const QString detail = space < 0 ? QString() : answer.mid(space + 1);
    int code = cancelled;
    if (kind == QLatin1String("picked")) {
        const QByteArray line = detail.toUtf8() + '\n';
        if (::write(m_output, line.constData(), size_t(line.size())) != line.size())
            complain(QStringLiteral("cannot write the picked color"));
        code = picked;
    } else if (kind == QLatin1String("unavailable")) {
        complain(unavailableLine(detail));
        code = unavailable;
    } else if (kind == QLatin1String("busy")) {
        complain(QStringLiteral("Tintwright is already picking a color."));
    } else if (kind != QLatin1String("cancelled")) {
        complain(QStringLiteral("Tintwright is already running but does not answer."));
    }
    // Whoever reads the output has it all now, without waiting for the
    // clipboard to be handed on.
    ::close(m_output);
    m_output = -1;
    return code;
}
