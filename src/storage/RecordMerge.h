#pragma once

#include "model/Palette.h"

#include <QList>
#include <QStringList>

#include <optional>

// Two versions of a store's records merged against the last version both
// sides shared (the base), as version-control tools merge files. For each
// palette, color, name and history entry: a side that changed it since the
// base wins over a side that did not; what one side deleted and the other
// left as it was stays deleted; what one side deleted and the other changed
// comes back with the change; where both sides renamed a palette, the newer
// version's name stands. Without a base, nothing is dropped: the other
// side's records join these, and these keep their names.
namespace RecordMerge {

// What the other side brought, and what the merge did with it.
struct Report
{
    int palettesTaken = 0;
    int colorsTaken = 0;
    int palettesStayedDeleted = 0;
    int colorsStayedDeleted = 0;
    QStringList renames;  // `"old" to "new"`, taken from the other side
    QStringList cameBack; // palettes deleted on one side and changed on the other

    // "2 palettes and 1 color", "1 color": what was taken.
    QString taken(bool palettes) const;
    // "1 color stayed deleted", `renamed "A" to "B"`, `"C" came back with its
    // changes`: what else happened.
    QStringList notes() const;
    // The line a merged copy is reported with: `Merged <taken> from "<copy>"`,
    // then the notes.
    QString summary(bool palettes, const QString &copyName) const;
};

// The palettes: this side's in its order, then those only the other side
// has. `theirsNewer` tells whose name stands where both renamed.
QList<Palette> palettes(const std::optional<QList<Palette>> &base, const QList<Palette> &mine,
                        const QList<Palette> &theirs, bool theirsNewer, Report &report);

// A list of colors (a palette's, the history's) by id: this side's in its
// order, then those only the other side has.
QList<ColorItem> colors(const std::optional<QList<ColorItem>> &base, const QList<ColorItem> &mine,
                        const QList<ColorItem> &theirs, Report &report);

// How many palettes, names and colors two versions differ in, their order
// aside: 0 when they hold the same.
int distance(const QList<Palette> &a, const QList<Palette> &b);
int distance(const QList<ColorItem> &a, const QList<ColorItem> &b);

// Whether `later` may have grown from `earlier`: it keeps something of it,
// there was nothing to keep, or it keeps nothing at all.
bool mayHaveGrownFrom(const QList<Palette> &earlier, const QList<Palette> &later);
bool mayHaveGrownFrom(const QList<ColorItem> &earlier, const QList<ColorItem> &later);

// Whether `theirs` shows that it had `after`: what turned `before` into
// `after` added or changed is there as it was made (and there was some), and
// what it removed is gone.
bool shows(const QList<Palette> &before, const QList<Palette> &after, const QList<Palette> &theirs);
bool shows(const QList<ColorItem> &before, const QList<ColorItem> &after, const QList<ColorItem> &theirs);

} // namespace RecordMerge
