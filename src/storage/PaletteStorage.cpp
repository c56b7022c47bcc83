#include "PaletteStorage.h"

#include "storage/DataLocation.h"

PaletteStorage::PaletteStorage(QObject *parent)
    : PaletteStorage(DataLocation::defaultFolder(), parent)
{
}

PaletteStorage::PaletteStorage(const QString &folder, QObject *parent)
    : QObject(parent)
    , m_file(folder, QStringLiteral("palettes"))
{
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

Palette PaletteStorage::createPalette(const QString &name, const QList<ColorItem> &colors)
{
    Palette palette = Palette::create(name);
    palette.colors = colors;
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
    setPalettes(m_file.load(RecordCoding::decodePalettes));
}

void PaletteStorage::savePalettes()
{
    m_file.save([this](JsonWriter &writer) { RecordCoding::write(m_palettes, writer); });
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
