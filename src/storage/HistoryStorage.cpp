#include "HistoryStorage.h"

#include "storage/DataLocation.h"

#include <cmath>

HistoryStorage::HistoryStorage(QObject *parent)
    : HistoryStorage(DataLocation::defaultFolder(), parent)
{
}

HistoryStorage::HistoryStorage(const QString &folder, QObject *parent)
    : QObject(parent)
    , m_file(folder, QStringLiteral("history"))
{
    loadHistory();
}

void HistoryStorage::addColor(const ColorItem &item)
{
    QList<ColorItem> colors = m_colors;
    colors.removeIf([&item](const ColorItem &entry) {
        return std::fabs(entry.red - item.red) < 0.01 && std::fabs(entry.green - item.green) < 0.01
            && std::fabs(entry.blue - item.blue) < 0.01;
    });
    colors.prepend(item);
    if (colors.size() > maxColors)
        colors.resize(maxColors);
    setColors(std::move(colors));
    saveHistory();
}

void HistoryStorage::removeColor(const QUuid &id)
{
    QList<ColorItem> colors = m_colors;
    colors.removeIf([&id](const ColorItem &entry) { return entry.id == id; });
    setColors(std::move(colors));
    saveHistory();
}

void HistoryStorage::clear()
{
    setColors({});
    saveHistory();
}

void HistoryStorage::loadHistory()
{
    setColors(m_file.load(RecordCoding::decodeColors));
}

void HistoryStorage::saveHistory()
{
    m_file.save([this](JsonWriter &writer) { RecordCoding::write(m_colors, writer); });
}

void HistoryStorage::setColors(QList<ColorItem> colors)
{
    if (colors == m_colors)
        return;
    m_colors = std::move(colors);
    emit colorsChanged();
}
