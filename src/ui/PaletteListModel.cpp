#include "PaletteListModel.h"

#include "storage/PaletteStorage.h"

#include "model/Plural.h"

#include <QColor>

PaletteListModel::PaletteListModel(PaletteStorage &paletteStorage, QObject *parent)
    : StoreListModel(parent)
    , m_paletteStorage(paletteStorage)
{
    connect(&paletteStorage, &PaletteStorage::palettesChanged, this, &PaletteListModel::refresh);
    refresh();
}

void PaletteListModel::refresh()
{
    QList<QUuid> ids;
    for (const Palette &palette : m_paletteStorage.palettes())
        ids.append(palette.id);
    sync(ids);
}

QVariant PaletteListModel::data(const QModelIndex &index, int role) const
{
    const Palette *found = recordAt(m_paletteStorage.palettes(), index);
    if (!found)
        return {};
    const Palette &palette = *found;
    const qsizetype count = palette.colors.size();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
    case Qt::AccessibleTextRole:
    case Qt::ToolTipRole:
        return palette.name;
    case Qt::AccessibleDescriptionRole:
        return countOf(count, QLatin1String("color"), QLatin1String("colors"));
    case CountRole:
        return QString::number(qint64(count));
    case StripRole: {
        QList<QColor> strip;
        for (const ColorItem &color : palette.colors)
            strip.append(toQColor(color.rgb(), color.alpha));
        return QVariant::fromValue(strip);
    }
    case IdRole:
        return palette.id;
    default:
        return {};
    }
}

bool PaletteListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !index.isValid() || index.row() >= rowCount())
        return false;
    // The name exactly as given, as the store keeps it.
    m_paletteStorage.renamePalette(index.data(IdRole).toUuid(), value.toString());
    return true;
}

Qt::ItemFlags PaletteListModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? StoreListModel::flags(index) | Qt::ItemIsEditable : StoreListModel::flags(index);
}

void PaletteListModel::removeRecord(const QUuid &id)
{
    m_paletteStorage.deletePalette(id);
}
