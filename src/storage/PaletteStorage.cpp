#include "PaletteStorage.h"

#include "model/RecordCoding.h"
#include "storage/ConsoleReport.h"
#include "storage/DataLocation.h"

#include <QTimer>

PaletteStorage::PaletteStorage(QObject *parent)
    : PaletteStorage(DataLocation::defaultFolder(), parent)
{
}

PaletteStorage::PaletteStorage(const QString &folder, QObject *parent)
    : QObject(parent)
    , m_file(folder + QStringLiteral("/palettes.json"))
{
    DataLocation::ensureFolder(folder);
    loadPalettes();
}

std::optional<Palette> PaletteStorage::palette(const QUuid &id) const
{
    const qsizetype index = indexOf(id);
    if (index < 0)
        return std::nullopt;
    return m_palettes.at(index);
}

Palette PaletteStorage::createPalette(const QString &name)
{
    const Palette palette = Palette::create(name);
    QList<Palette> palettes = m_palettes;
    palettes.append(palette);
    setPalettes(std::move(palettes));
    savePalettes();
    return palette;
}

void PaletteStorage::renamePalette(const QUuid &id, const QString &name)
{
    const qsizetype index = indexOf(id);
    if (index < 0)
        return;
    QList<Palette> palettes = m_palettes;
    palettes[index].name = name;
    setPalettes(std::move(palettes));
    savePalettes();
}

void PaletteStorage::deletePalette(const QUuid &id)
{
    QList<Palette> palettes = m_palettes;
    palettes.removeIf([&id](const Palette &palette) { return palette.id == id; });
    setPalettes(std::move(palettes));
    savePalettes();
}

void PaletteStorage::addColor(const ColorItem &item, const QUuid &toPaletteId)
{
    const qsizetype index = indexOf(toPaletteId);
    if (index < 0)
        return;
    QList<Palette> palettes = m_palettes;
    palettes[index].colors.append(item);
    setPalettes(std::move(palettes));
    savePalettes();
}

void PaletteStorage::removeColor(const QUuid &colorId, const QUuid &fromPaletteId)
{
    const qsizetype index = indexOf(fromPaletteId);
    if (index < 0)
        return;
    QList<Palette> palettes = m_palettes;
    palettes[index].colors.removeIf([&colorId](const ColorItem &item) { return item.id == colorId; });
    setPalettes(std::move(palettes));
    savePalettes();
}

void PaletteStorage::loadPalettes()
{
    const JsonFile::ReadResult read = m_file.read();
    if (read.status == JsonFile::ReadStatus::Missing) {
        setPalettes({});
        return;
    }
    QString error = read.error;
    if (read.status == JsonFile::ReadStatus::Read) {
        Decoded<QList<Palette>> decoded = RecordCoding::decodePalettes(read.data);
        if (decoded.value) {
            setPalettes(std::move(*decoded.value));
            // Encode the records once while the program is idle after
            // loading, so that the first change re-encodes only its palette.
            QTimer::singleShot(0, this, [this] { m_recordCache.encode(m_palettes); });
            return;
        }
        error = decoded.error;
    }
    printReportLine(QStringLiteral("Failed to load palettes: ") + error);
    m_file.keepUnusableFile();
    setPalettes({});
}

void PaletteStorage::savePalettes()
{
    const Encoded encoded = m_recordCache.encode(m_palettes);
    const QString error = encoded.data ? m_file.write(*encoded.data) : encoded.error;
    if (!error.isEmpty())
        printReportLine(QStringLiteral("Failed to save palettes: ") + error);
}

qsizetype PaletteStorage::indexOf(const QUuid &id) const
{
    for (qsizetype i = 0; i < m_palettes.size(); ++i) {
        if (m_palettes.at(i).id == id)
            return i;
    }
    return -1;
}

void PaletteStorage::setPalettes(QList<Palette> palettes)
{
    if (palettes == m_palettes)
        return;
    m_palettes = std::move(palettes);
    emit palettesChanged();
}
