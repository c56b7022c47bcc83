#pragma once

#include "app/SingleInstance.h"
#include "model/Notation.h"

#include <QString>

// `tintwright --pick`: one pick without the window. Where Tintwright runs
// for the data folder the running instance picks (it owns the stores and
// keeps the copied text); otherwise this process takes the single-instance
// place, picks, records the pick in the history and hands the copied text
// to a keeper that outlives it. Standard output carries only the picked
// text.
class PickCommand
{
public:
    static constexpr int picked = 0;
    static constexpr int cancelled = 1;
    static constexpr int unavailable = 3;

    PickCommand(const QString &dataFolder, Notation notation, bool copy);

    // Needs a QGuiApplication; returns the exit code.
    int run();

private:
    int pickHere(SingleInstance &instance);
    int report(const SingleInstance::PickReply &reply);

    QString m_dataFolder;
    Notation m_notation;
    bool m_copy;
    int m_output = -1;
};
