#pragma once

#include <QByteArray>
#include <QString>

struct ContrastReport;

// `tintwright --contrast FOREGROUND BACKGROUND [--require LEVEL]`: the
// Contrast tab's report on a pair as one JSON object on standard output,
// for scripts and builds. Needs no display.
namespace ContrastCommand {

// Exit status: 0, or 1 when the pair misses the required level ("AA",
// "AAA", "AA-large"; none when empty), 2 when a color cannot be read.
int run(const QString &foreground, const QString &background, const QString &required);

// The report's text, for the colors as read.
QByteArray report(const ContrastReport &report);

} // namespace ContrastCommand
