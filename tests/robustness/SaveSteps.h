#pragma once

#include "model/ColorItem.h"
#include "model/Palette.h"

#include <QList>

class HistoryStorage;
class PaletteStorage;

// A deterministic sequence of store changes for the kill-during-save test.
// Step k changes exactly one file: odd steps the history, even steps the
// palettes. The child process makes each change through the stores; the
// test replays the same steps on plain lists to know what the files must
// hold after any step.
namespace SaveSteps {

struct Library
{
    QList<Palette> palettes;
    QList<ColorItem> history;
};

// A library big enough that a rewrite takes a few milliseconds, so that
// kills land inside writes.
Library baseline();

ColorItem stepColor(int step);

// The change of one step, applied to the model lists.
void apply(int step, Library &library);
// The same change made through the stores (which save it).
void apply(int step, PaletteStorage &palettes, HistoryStorage &history);

// Palettes created during the run get random ids and dates; they are
// compared by everything else.
bool samePalettes(const QList<Palette> &a, const QList<Palette> &b);

} // namespace SaveSteps
