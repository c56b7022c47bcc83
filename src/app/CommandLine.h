#pragma once

#include "model/Notation.h"

#include <QString>
#include <QStringList>

// What a start of the program was asked to do, read from its arguments
// before any window system connection is made.
struct CommandLine
{
    enum class Action {
        ShowWindow,     // no options: start, or bring the running window forward
        Pick,           // --pick: one pick, its text on standard output
        Contrast,       // --contrast FOREGROUND BACKGROUND: a report on standard output
        ServeClipboard, // hidden: keep a copied text on the clipboard
        Exit,           // --help, --version or a usage error: print and exit
    };

    Action action = Action::ShowWindow;
    Notation notation = Notation::Hex;
    bool copy = true;
    QString clipboardText;
    // For Contrast: the two color texts as given, and the level the pair
    // must reach ("AA", "AAA", "AA-large"; empty when none is required).
    QString foreground;
    QString background;
    QString required;
    // For Exit: what to print, on standard output when exitCode is 0, else
    // on standard error.
    QString message;
    int exitCode = 0;

    static constexpr int usageExitCode = 2;

    // Needs a QCoreApplication for the program's name and version.
    static CommandLine parse(const QStringList &arguments);
};
