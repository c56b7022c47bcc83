#include "PaletteListModel.h"

#include "storage/PaletteStorage.h"

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
    const QList<Palette> &palettes = m_paletteStorage.palettes();
    if (!index.isValid() || index.row() >= palettes.size())
        return {};
    const Palette &palette = palettes.at(index.row());
    const qsizetype count = palette.colors.size();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
    case Qt::ToolTipRole:
        return palette.name;
    case Qt::AccessibleDescriptionRole:
        return count == 1 ? tr("1 color") : tr("%1 colors").arg(count);
    case CountRole:
        return QString::number(qint64(count));
    case StripRole: {
        QList<QColor> strip;
        for (const ColorItem &color : palette.colors)
            strip.append(toQColor(color));
        return QVariant::fromValue(strip);
    }
    case IdRole:
        return palette.id;
    default:
        return {};
    }
}
