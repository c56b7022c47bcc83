#include "RecordMerge.h"

#include "model/Plural.h"

#include <QHash>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

template<typename Record> const Record *withId(const QList<Record> &records, const QUuid &id)
{
    for (const Record &record : records) {
        if (record.id == id)
            return &record;
    }
    return nullptr;
}

template<typename Record> const Record *inBase(const std::optional<QList<Record>> &base, const QUuid &id)
{
    return base ? withId(*base, id) : nullptr;
}

// Every record of a version by where it stands (a palette, or a color in
// a palette), with a hash of what it holds.
using Contents = QHash<QByteArray, size_t>;

size_t contentOf(const ColorItem &item)
{
    return qHashMulti(0, item.name, item.red, item.green, item.blue, item.alpha, item.dateAdded);
}

void addColors(Contents &contents, const QByteArray &where, const QList<ColorItem> &colors)
{
    for (const ColorItem &item : colors)
        contents.insert(where + item.id.toRfc4122(), contentOf(item));
}

Contents contentsOf(const QList<ColorItem> &colors)
{
    Contents contents;
    addColors(contents, {}, colors);
    return contents;
}

Contents contentsOf(const QList<Palette> &palettes)
{
    Contents contents;
    for (const Palette &palette : palettes) {
        const QByteArray where = palette.id.toRfc4122();
        contents.insert(where, qHash(palette.name));
        addColors(contents, where, palette.colors);
    }
    return contents;
}

int distanceOf(const Contents &a, const Contents &b)
{
    int distance = 0;
    for (auto i = a.cbegin(); i != a.cend(); ++i) {
        const auto there = b.constFind(i.key());
        distance += there == b.cend() || *there != i.value() ? 1 : 0;
    }
    for (auto i = b.cbegin(); i != b.cend(); ++i)
        distance += a.contains(i.key()) ? 0 : 1;
    return distance;
}

bool sharesAny(const Contents &earlier, const Contents &later)
{
    return earlier.isEmpty() || std::any_of(earlier.keyBegin(), earlier.keyEnd(), [&](const QByteArray &key) {
               return later.contains(key);
           });
}

bool showsChanges(const Contents &before, const Contents &after, const Contents &theirs)
{
    // What was added or changed shows; what was removed shows only where
    // nothing else changed (below).
    bool shown = false;
    for (auto i = after.cbegin(); i != after.cend(); ++i) {
        const auto was = before.constFind(i.key());
        if (was != before.cend() && *was == i.value())
            continue;
        // What was added or changed shows only as it was made: a record
        // they hold otherwise may have reached them from an older version.
        const auto there = theirs.constFind(i.key());
        if (there == theirs.cend() || *there != i.value())
            return false;
        shown = true;
    }
    if (!shown) {
        // Only deletions: shown when they lack every one of them and hold all
        // the rest as it was (else they may never have had what was deleted).
        bool deleted = false;
        for (auto i = before.cbegin(); i != before.cend(); ++i) {
            if (after.contains(i.key()))
                continue;
            if (theirs.contains(i.key()))
                return false;
            deleted = true;
        }
        for (auto i = after.cbegin(); i != after.cend(); ++i) {
            const auto there = theirs.constFind(i.key());
            if (there == theirs.cend() || *there != i.value())
                return false;
        }
        return deleted;
    }
    for (auto i = before.cbegin(); i != before.cend(); ++i) {
        if (!after.contains(i.key()) && theirs.contains(i.key()))
            return false;
    }
    return true;
}

} // namespace

namespace RecordMerge {

bool shows(const QList<Palette> &before, const QList<Palette> &after, const QList<Palette> &theirs)
{
    return showsChanges(contentsOf(before), contentsOf(after), contentsOf(theirs));
}

bool shows(const QList<ColorItem> &before, const QList<ColorItem> &after, const QList<ColorItem> &theirs)
{
    return showsChanges(contentsOf(before), contentsOf(after), contentsOf(theirs));
}

int distance(const QList<Palette> &a, const QList<Palette> &b)
{
    return distanceOf(contentsOf(a), contentsOf(b));
}

int distance(const QList<ColorItem> &a, const QList<ColorItem> &b)
{
    return distanceOf(contentsOf(a), contentsOf(b));
}

bool mayHaveGrownFrom(const QList<Palette> &earlier, const QList<Palette> &later)
{
    return sharesAny(contentsOf(earlier), contentsOf(later));
}

bool mayHaveGrownFrom(const QList<ColorItem> &earlier, const QList<ColorItem> &later)
{
    return sharesAny(contentsOf(earlier), contentsOf(later));
}

QString Report::summary(bool palettes, const QString &copyName) const
{
    QStringList parts{u"Merged %1 from \"%2\""_s.arg(taken(palettes), copyName)};
    parts += notes();
    return parts.join("; "_L1);
}

QString Report::taken(bool palettes) const
{
    const QString colors = countOf(colorsTaken, "color"_L1, "colors"_L1);
    return palettes ? countOf(palettesTaken, "palette"_L1, "palettes"_L1) + " and "_L1 + colors : colors;
}

QStringList Report::notes() const
{
    QStringList notes, deleted;
    if (palettesStayedDeleted > 0)
        deleted.append(countOf(palettesStayedDeleted, "palette"_L1, "palettes"_L1));
    if (colorsStayedDeleted > 0)
        deleted.append(countOf(colorsStayedDeleted, "color"_L1, "colors"_L1));
    if (!deleted.isEmpty())
        notes.append(deleted.join(" and "_L1) + " stayed deleted"_L1);
    for (const QString &rename : renames)
        notes.append("renamed "_L1 + rename);
    for (const QString &name : cameBack)
        notes.append(u"\"%1\" came back with its changes"_s.arg(name));
    return notes;
}

QList<ColorItem> colors(const std::optional<QList<ColorItem>> &base, const QList<ColorItem> &mine,
                        const QList<ColorItem> &theirs, Report &report)
{
    QList<ColorItem> merged;
    for (const ColorItem &item : mine) {
        const ColorItem *before = inBase(base, item.id);
        if (const ColorItem *there = withId(theirs, item.id))
            merged.append(before && *before == item ? *there : item); // the side that changed it
        else if (before && *before == item)
            ++report.colorsStayedDeleted; // deleted there, left as it was here
        else
            merged.append(item); // added here, or changed here
    }
    for (const ColorItem &item : theirs) {
        if (withId(mine, item.id))
            continue;
        const ColorItem *before = inBase(base, item.id);
        if (before && *before == item) {
            ++report.colorsStayedDeleted;
        } else {
            merged.append(item);
            ++report.colorsTaken;
        }
    }
    return merged;
}

QList<Palette> palettes(const std::optional<QList<Palette>> &base, const QList<Palette> &mine,
                        const QList<Palette> &theirs, bool theirsNewer, Report &report)
{
    QList<Palette> merged;
    for (const Palette &palette : mine) {
        const Palette *before = inBase(base, palette.id);
        const Palette *there = withId(theirs, palette.id);
        if (there) {
            Palette both = palette;
            // Known to both since the base: the side that renamed it; added
            // on both sides since (a base that does not have it): the newer.
            const bool renamedThere = before ? there->name != before->name : base.has_value();
            if (there->name != palette.name && renamedThere
                && ((before && palette.name == before->name) || theirsNewer)) {
                report.renames.append(u"\"%1\" to \"%2\""_s.arg(palette.name, there->name));
                both.name = there->name;
            }
            both.colors = colors(before ? std::optional(before->colors) : std::nullopt, palette.colors,
                                 there->colors, report);
            merged.append(both);
        } else if (before && *before == palette) {
            ++report.palettesStayedDeleted;
        } else {
            merged.append(palette);
            if (before)
                report.cameBack.append(palette.name);
        }
    }
    for (const Palette &palette : theirs) {
        if (withId(mine, palette.id))
            continue;
        const Palette *before = inBase(base, palette.id);
        if (before && *before == palette) {
            ++report.palettesStayedDeleted;
            continue;
        }
        merged.append(palette);
        if (before) {
            report.cameBack.append(palette.name);
        } else {
            ++report.palettesTaken;
            report.colorsTaken += int(palette.colors.size());
        }
    }
    return merged;
}

} // namespace RecordMerge
