#include "ColorListModel.h"

#include "model/ColorFormats.h"
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

ColorListModel::ColorListModel(HistoryStorage &historyStorage, QObject *parent)
    : StoreListModel(parent)
    , m_historyStorage(&historyStorage)
{
    connect(&historyStorage, &HistoryStorage::colorsChanged, this, &ColorListModel::refresh);
    refresh();
}

ColorListModel::ColorListModel(PaletteStorage &paletteStorage, const QUuid &paletteId, QObject *parent)
    : StoreListModel(parent)
    , m_paletteStorage(&paletteStorage)
    , m_paletteId(paletteId)
{
    connect(&paletteStorage, &PaletteStorage::palettesChanged, this, &ColorListModel::refresh);
    refresh();
}

const QList<ColorItem> &ColorListModel::colors() const
{
    static const QList<ColorItem> none;
    if (m_historyStorage)
        return m_historyStorage->colors();
    for (const Palette &palette : m_paletteStorage->palettes())
        if (palette.id == m_paletteId)
            return palette.colors;
    return none;
}

void ColorListModel::refresh()
{
    QList<QUuid> ids;
    for (const ColorItem &color : colors())
        ids.append(color.id);
    sync(ids);
}

void ColorListModel::removeRecord(const QUuid &id)
{
    if (m_historyStorage)
        m_historyStorage->removeColor(id);
    else
        m_paletteStorage->removeColor(id, m_paletteId);
}

std::optional<ColorItem> ColorListModel::color(const QModelIndex &index) const
{
    const ColorItem *found = recordAt(colors(), index);
    return found ? std::optional<ColorItem>(*found) : std::nullopt;
}

QVariant ColorListModel::data(const QModelIndex &index, int role) const
{
    const ColorItem *found = recordAt(colors(), index);
    if (!found)
        return {};
    const ColorItem &color = *found;
    const QString hex = hexString(color.red, color.green, color.blue);
    const bool history = m_historyStorage != nullptr;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return history ? hex : color.name;
    case Qt::AccessibleDescriptionRole:
        return history ? tr("Copies %1").arg(hex) : hex;
    case Qt::ToolTipRole:
        return history ? tr("Copy %1").arg(hex) : color.name + QLatin1Char('\n') + hex;
    case Qt::DecorationRole:
        return toQColor(color.rgb(), color.alpha);
    case HexRole:
        return hex;
    case IdRole:
        return color.id;
    default:
        return {};
    }
}
