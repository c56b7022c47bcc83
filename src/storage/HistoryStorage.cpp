#include "HistoryStorage.h"

#include "storage/DataLocation.h"

#include "model/Plural.h"

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

bool nearDuplicates(const ColorItem &a, const ColorItem &b)
{
    return std::fabs(a.red - b.red) < 0.01 && std::fabs(a.green - b.green) < 0.01
        && std::fabs(a.blue - b.blue) < 0.01;
}

// Entries of the copy that the list lacks join it; all newest first, a color
// standing once (its newest entry), at most maxColors.
QString mergeHistory(QList<ColorItem> &colors, const QList<ColorItem> &copy)
{
    QList<ColorItem> all = colors;
    QSet<QUuid> known;
    for (const ColorItem &item : colors)
        known.insert(item.id);
    for (const ColorItem &item : copy) {
        if (!known.contains(item.id))
            all.append(item);
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const ColorItem &a, const ColorItem &b) { return a.dateAdded > b.dateAdded; });
    QList<ColorItem> merged;
    qsizetype taken = 0;
    for (const ColorItem &item : std::as_const(all)) {
        if (merged.size() == HistoryStorage::maxColors)
            break;
        if (std::any_of(merged.cbegin(), merged.cend(),
                        [&item](const ColorItem &newer) { return nearDuplicates(newer, item); }))
            continue;
        merged.append(item);
        taken += known.contains(item.id) ? 0 : 1;
    }
    colors = merged;
    return countOf(taken, "color"_L1, "colors"_L1);
}

} // namespace

HistoryStorage::HistoryStorage(QObject *parent)
    : HistoryStorage(DataLocation::defaultFolder(), parent)
{
}

HistoryStorage::HistoryStorage(const QString &folder, QObject *parent)
    : QObject(parent)
    , m_colors(folder, QStringLiteral("history"), RecordCoding::decodeColors, RecordCoding::encodeColors,
               mergeHistory, [this] { emit colorsChanged(); })
{
    loadHistory();
}

void HistoryStorage::addColor(const ColorItem &item)
{
    m_colors.change([item](QList<ColorItem> &colors) {
        colors.removeIf([&item](const ColorItem &entry) { return nearDuplicates(entry, item); });
        colors.prepend(item);
        if (colors.size() > maxColors)
            colors.resize(maxColors);
        return true;
    });
}

void HistoryStorage::removeColor(const QUuid &id)
{
    m_colors.change([id](QList<ColorItem> &colors) {
        colors.removeIf([&id](const ColorItem &entry) { return entry.id == id; });
        return true;
    });
}

void HistoryStorage::clear()
{
    m_colors.change([](QList<ColorItem> &colors) {
        colors.clear();
        return true;
    });
}

void HistoryStorage::loadHistory()
{
    m_colors.load();
}

void HistoryStorage::saveHistory()
{
    m_colors.save();
}
