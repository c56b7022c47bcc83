#include "PaletteStorage.h"

#include "storage/DataLocation.h"

namespace {

qsizetype indexOf(const QList<Palette> &palettes, const QUuid &id)
{
    for (qsizetype i = 0; i < palettes.size(); ++i) {
        if (palettes.at(i).id == id)
            return i;
    }
    return -1;
}

} // namespace

PaletteStorage::PaletteStorage(QObject *parent)
    : PaletteStorage(DataLocation::defaultFolder(), parent)
{
}

PaletteStorage::PaletteStorage(const QString &folder, QObject *parent)
    : QObject(parent)
    , m_palettes(folder, QStringLiteral("palettes"), RecordCoding::decodePalettes,
                 RecordCoding::encodePalettes, RecordMerge::palettes, [this] { emit palettesChanged(); })
{
    loadPalettes();
}

std::optional<Palette> PaletteStorage::palette(const QUuid &id) const
{
    const qsizetype index = indexOf(palettes(), id);
    if (index < 0)
        return std::nullopt;
    return palettes().at(index);
}

Palette PaletteStorage::createPalette(const QString &name)
{
    const Palette palette = Palette::create(name);
    appendPalette(palette);
    return palette;
}

Palette PaletteStorage::createPalette(const QString &name, const QList<ColorItem> &colors)
{
    Palette palette = Palette::create(name);
    palette.colors = colors;
    appendPalette(palette);
    return palette;
}

void PaletteStorage::appendPalette(const Palette &palette)
{
    m_palettes.change([palette](QList<Palette> &palettes) {
        if (indexOf(palettes, palette.id) >= 0)
            return false;
        palettes.append(palette);
        return true;
    });
}

void PaletteStorage::renamePalette(const QUuid &id, const QString &name)
{
    m_palettes.change([id, name](QList<Palette> &palettes) {
        const qsizetype index = indexOf(palettes, id);
        if (index < 0)
            return false;
        palettes[index].name = name;
        return true;
    });
}

void PaletteStorage::deletePalette(const QUuid &id)
{
    m_palettes.change([id](QList<Palette> &palettes) {
        palettes.removeIf([&id](const Palette &palette) { return palette.id == id; });
        return true;
    });
}

void PaletteStorage::addColor(const ColorItem &item, const QUuid &toPaletteId)
{
    m_palettes.change([item, toPaletteId](QList<Palette> &palettes) {
        const qsizetype index = indexOf(palettes, toPaletteId);
        if (index < 0)
            return false;
        palettes[index].colors.append(item);
        return true;
    });
}

void PaletteStorage::removeColor(const QUuid &colorId, const QUuid &fromPaletteId)
{
    m_palettes.change([colorId, fromPaletteId](QList<Palette> &palettes) {
        const qsizetype index = indexOf(palettes, fromPaletteId);
        if (index < 0)
            return false;
        palettes[index].colors.removeIf([&colorId](const ColorItem &item) { return item.id == colorId; });
        return true;
    });
}

void PaletteStorage::loadPalettes()
{
    m_palettes.load();
}

void PaletteStorage::savePalettes()
{
    m_palettes.save();
}
