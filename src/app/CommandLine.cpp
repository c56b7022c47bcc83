#include "CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace {

CommandLine exitWith(int code, const QString &message)
{
    CommandLine command;
    command.action = CommandLine::Action::Exit;
    command.exitCode = code;
    command.message = message;
    return command;
}

QString notationNames()
{
    QStringList names;
    for (const Notation notation : Notations::all)
        names.append(Notations::name(notation));
    return names.join(u", ");
}

CommandLine usageError(const QString &problem)
{
    return exitWith(CommandLine::usageExitCode, QStringLiteral("tintwright: %1\n").arg(problem));
}

} // namespace

CommandLine CommandLine::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Pick colors from the screen, convert them and check their contrast."));
    const QCommandLineOption helpOption = parser.addHelpOption();
    const QCommandLineOption versionOption = parser.addVersionOption();
    const QCommandLineOption pickOption(
        QStringLiteral("pick"),
        QStringLiteral("Pick a color from the screen without showing the window, print its text and copy it. "
                       "Exits 0 when picked, 1 when cancelled, 2 on a usage error, 3 when this session "
                       "offers no way to pick."));
    const QCommandLineOption formatOption(
        QStringLiteral("format"),
        QStringLiteral("Notation of the picked color: %1 (default hex).").arg(notationNames()),
        QStringLiteral("notation"), QStringLiteral("hex"));
    const QCommandLineOption noCopyOption(QStringLiteral("no-copy"),
                                          QStringLiteral("Leave the clipboard alone."));
    const QCommandLineOption contrastOption(
        QStringLiteral("contrast"),
        QStringLiteral("Check FOREGROUND text on BACKGROUND (each #RRGGBB, rgb(...), hsl(...) or oklch(...)) "
                       "without a window or display and print a JSON report: the WCAG ratio and level, "
                       "the APCA contrast and its use, the nearest colors that pass AA and AAA, and the "
                       "pair as seen with protanopia, deuteranopia, tritanopia and achromatopsia. "
                       "Exits 2 when a color cannot be read."));
    const QCommandLineOption requireOption(
        QStringLiteral("require"),
        QStringLiteral("With --contrast: exit 1 unless the pair reaches this level: AA, AAA or AA-large."),
        QStringLiteral("level"));
    QCommandLineOption serveClipboardOption(QStringLiteral("serve-clipboard"), QString(),
                                            QStringLiteral("text"));
    serveClipboardOption.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOptions(
        {pickOption, formatOption, noCopyOption, contrastOption, requireOption, serveClipboardOption});
    parser.addPositionalArgument(QStringLiteral("FOREGROUND"),
                                 QStringLiteral("With --contrast: the text color."));
    parser.addPositionalArgument(QStringLiteral("BACKGROUND"),
                                 QStringLiteral("With --contrast: the background."));

    if (!parser.parse(arguments))
        return usageError(parser.errorText());
    if (parser.isSet(helpOption))
        return exitWith(0, parser.helpText());
    if (parser.isSet(versionOption))
        return exitWith(
            0, QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion() + u'\n');
    if (parser.isSet(contrastOption)) {
        if (parser.isSet(pickOption))
            return usageError(QStringLiteral("--contrast and --pick do not go together."));
        const QStringList colors = parser.positionalArguments();
        if (colors.size() != 2)
            return usageError(
                QStringLiteral("--contrast takes two colors, the text's and the background's."));
        const QString required = parser.value(requireOption);
        if (parser.isSet(requireOption) && !QStringList{"AA", "AAA", "AA-large"}.contains(required))
            return usageError(
                QStringLiteral("Unknown level '%1'; expected one of AA, AAA, AA-large.").arg(required));
        CommandLine command;
        command.action = Action::Contrast;
        command.foreground = colors.at(0);
        command.background = colors.at(1);
        command.required = required;
        return command;
    }
    if (parser.isSet(requireOption))
        return usageError(QStringLiteral("--require goes only with --contrast."));
    if (!parser.positionalArguments().isEmpty())
        return usageError(
            QStringLiteral("Unexpected argument '%1'.").arg(parser.positionalArguments().first()));

    CommandLine command;
    if (parser.isSet(serveClipboardOption)) {
        command.action = Action::ServeClipboard;
        command.clipboardText = parser.value(serveClipboardOption);
        return command;
    }
    if (!parser.isSet(pickOption)) {
        for (const QCommandLineOption &pickOnly : {formatOption, noCopyOption}) {
            if (parser.isSet(pickOnly))
                return usageError(
                    QStringLiteral("--%1 goes only with --pick.").arg(pickOnly.names().first()));
        }
        return command;
    }
    const std::optional<Notation> notation = Notations::fromName(parser.value(formatOption));
    if (!notation) {
        return usageError(QStringLiteral("Unknown notation '%1'; expected one of %2.")
                              .arg(parser.value(formatOption), notationNames()));
    }
    command.action = Action::Pick;
    command.notation = *notation;
    command.copy = !parser.isSet(noCopyOption);
    return command;
}
