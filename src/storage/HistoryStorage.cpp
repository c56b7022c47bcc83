#include "HistoryStorage.h"

#include "storage/DataLocation.h"

#include <algorithm>
#include <cmath>

namespace {

bool nearDuplicates(const ColorItem &a, const ColorItem &b)
{
    return std::fabs(a.red - b.red) < 0.01 && std::fabs(a.green - b.green) < 0.01
        && std::fabs(a.blue - b.blue) < 0.01;
}

// Both sides' entries merged by id, then kept as the history keeps them:
// newest first, a color standing once (its newest entry), at most maxColors.
QList<ColorItem> mergeHistory(const std::optional<QList<ColorItem>> &base, const QList<ColorItem> &mine,
                              const QList<ColorItem> &theirs, bool, RecordMerge::Report &report)
{
    QList<ColorItem> all = RecordMerge::colors(base, mine, theirs, report);
    std::stable_sort(all.begin(), all.end(),
                     [](const ColorItem &a, const ColorItem &b) { return a.dateAdded > b.dateAdded; });
    QList<ColorItem> merged;
    for (const ColorItem &item : std::as_const(all)) {
        if (merged.size() == HistoryStorage::maxColors)
            break;
        if (std::none_of(merged.cbegin(), merged.cend(),
                         [&item](const ColorItem &newer) { return nearDuplicates(newer, item); }))
            merged.append(item);
    }
    return merged;
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
