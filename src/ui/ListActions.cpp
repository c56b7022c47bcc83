#include "ListActions.h"

#include "ClipboardWriter.h"
#include "ColorListModel.h"
#include "PaletteListModel.h"
#include "StyledListView.h"
#include "Theme.h"
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

#include <QMenu>

namespace {

enum class RowKind { None, HistoryColor, Palette, PaletteColor };

RowKind kindOf(const QModelIndex &index)
{
    if (!index.isValid())
        return RowKind::None;
    if (qobject_cast<const PaletteListModel *>(index.model()))
        return RowKind::Palette;
    if (const auto *colors = qobject_cast<const ColorListModel *>(index.model()))
        return colors->paletteId().isNull() ? RowKind::HistoryColor : RowKind::PaletteColor;
    return RowKind::None;
}

QUuid idOf(const QModelIndex &index)
{
    return index.data(StoreListModel::IdRole).toUuid();
}

} // namespace

ListActions::ListActions(PaletteStorage &paletteStorage, HistoryStorage &historyStorage, QObject *parent)
    : QObject(parent)
    , m_paletteStorage(paletteStorage)
    , m_historyStorage(historyStorage)
{
}

void ListActions::attach(StyledListView *list)
{
    connect(list, &StyledListView::triggered, this, &ListActions::trigger);
    connect(list, &StyledListView::copyRequested, this, &ListActions::copyHex);
    connect(list, &StyledListView::menuRequested, list,
            [this, list](const QModelIndex &index, const QPoint &at) {
                QMenu *menu = createMenu(index, list);
                if (!menu)
                    return;
                menu->setAttribute(Qt::WA_DeleteOnClose);
                menu->popup(at);
            });
}

void ListActions::trigger(const QModelIndex &index)
{
    switch (kindOf(index)) {
    case RowKind::HistoryColor:
        copyHex(index);
        break;
    case RowKind::Palette:
        emit paletteOpened(idOf(index));
        break;
    case RowKind::PaletteColor:
    case RowKind::None:
        break;
    }
}

void ListActions::copyHex(const QModelIndex &index)
{
    const QString hex = index.data(StoreListModel::HexRole).toString();
    if (!hex.isEmpty())
        copyToClipboard(hex);
}

void ListActions::remove(const QModelIndex &index)
{
    switch (kindOf(index)) {
    case RowKind::HistoryColor:
        // Every entry with this id.
        m_historyStorage.removeColor(idOf(index));
        break;
    case RowKind::Palette:
        m_paletteStorage.deletePalette(idOf(index));
        break;
    case RowKind::PaletteColor:
        m_paletteStorage.removeColor(idOf(index),
                                     static_cast<const ColorListModel *>(index.model())->paletteId());
        break;
    case RowKind::None:
        break;
    }
}

QMenu *ListActions::createMenu(const QModelIndex &index, QWidget *parent)
{
    const RowKind kind = kindOf(index);
    if (kind == RowKind::None)
        return nullptr;
    auto *menu = new QMenu(parent);
    Theme::styleMenu(menu);
    const QPersistentModelIndex row(index);
    if (kind != RowKind::Palette)
        menu->addAction(tr("Copy Hex"), this, [this, row] { copyHex(row); });
    if (kind == RowKind::HistoryColor) {
        const QUuid id = idOf(index);
        menu->addAction(tr("Add to Palette"), this, [this, id] { emit addToPaletteRequested(id); });
    }
    if (kind != RowKind::Palette)
        menu->addSeparator();
    menu->addAction(kind == RowKind::HistoryColor ? tr("Remove") : tr("Delete"), this,
                    [this, row] { remove(row); });
    return menu;
}
