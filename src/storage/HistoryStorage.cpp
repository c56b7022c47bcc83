#include "HistoryStorage.h"

#include "model/RecordCoding.h"
#include "storage/ConsoleReport.h"
#include "storage/DataLocation.h"

#include <cmath>

HistoryStorage::HistoryStorage(QObject *parent)
    : HistoryStorage(DataLocation::defaultFolder(), parent)
{
}

HistoryStorage::HistoryStorage(const QString &folder, QObject *parent)
    : QObject(parent)
    , m_file(folder + QStringLiteral("/history.json"))
{
    DataLocation::ensureFolder(folder);
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
    const JsonFile::ReadResult read = m_file.read();
    if (read.status == JsonFile::ReadStatus::Missing) {
        setColors({});
        return;
    }
    QString error = read.error;
    if (read.status == JsonFile::ReadStatus::Read) {
        Decoded<QList<ColorItem>> decoded = RecordCoding::decodeColors(read.data);
        if (decoded.value) {
            setColors(std::move(*decoded.value));
            return;
        }
        error = decoded.error;
    }
    printReportLine(QStringLiteral("Failed to load history: ") + error);
    m_file.keepUnusableFile();
    setColors({});
}

void HistoryStorage::saveHistory()
{
    const Encoded encoded = RecordCoding::encodeColors(m_colors);
    const QString error = encoded.data ? m_file.write(*encoded.data) : encoded.error;
    if (!error.isEmpty())
        printReportLine(QStringLiteral("Failed to save history: ") + error);
}

void HistoryStorage::setColors(QList<ColorItem> colors)
{
    if (colors == m_colors)
        return;
    m_colors = std::move(colors);
    emit colorsChanged();
}
