#include "ListActions.h"

#include "ClipboardWriter.h"
#include "ColorListModel.h"
#include "PaletteListModel.h"
#include "StyledListView.h"
#include "Theme.h"
#include "storage/HistoryStorage.h"
#include "storage/PaletteFiles.h"
#include "storage/PaletteStorage.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
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

QString exportFilter(ExchangeFormat format)
{
    const QString pattern = QStringLiteral(" (*.%1)").arg(PaletteExchange::suffix(format));
    switch (format) {
    case ExchangeFormat::Gpl:
        return ListActions::tr("GIMP Palette") + pattern;
    case ExchangeFormat::Ase:
        return ListActions::tr("Adobe Swatch Exchange") + pattern;
    case ExchangeFormat::Css:
        return ListActions::tr("CSS Custom Properties") + pattern;
    case ExchangeFormat::Json:
        return ListActions::tr("JSON") + pattern;
    case ExchangeFormat::Text:
        return ListActions::tr("Plain Text, One HEX a Line") + pattern;
    }
    return {};
}

// The palette's name as a file name: no folder separators, never empty.
QString fileNameFor(const QString &paletteName)
{
    QString name = paletteName.trimmed();
    name.replace(u'/', u'-').replace(u'\\', u'-');
    if (name.startsWith(u'.'))
        name.remove(0, 1);
    return name.isEmpty() ? ListActions::tr("Palette") : name;
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
    if (kind == RowKind::Palette)
        addPaletteItems(menu, idOf(index));
    menu->addSeparator();
    menu->addAction(kind == RowKind::HistoryColor ? tr("Remove") : tr("Delete"), this,
                    [this, row] { remove(row); });
    return menu;
}

QMenu *ListActions::createPaletteMenu(const QUuid &paletteId, QWidget *parent)
{
    if (!m_paletteStorage.palette(paletteId))
        return nullptr;
    auto *menu = new QMenu(parent);
    Theme::styleMenu(menu);
    addPaletteItems(menu, paletteId);
    return menu;
}

void ListActions::addPaletteItems(QMenu *menu, const QUuid &paletteId)
{
    QWidget *dialogParent = menu->parentWidget() ? menu->parentWidget()->window() : nullptr;
    menu->addAction(tr("Export…"), this,
                    [this, paletteId, dialogParent] { exportPalette(paletteId, dialogParent); });
    menu->addAction(tr("Copy as CSS"), this, [this, paletteId] { copyPaletteAsCss(paletteId); });
}

void ListActions::exportPalette(const QUuid &paletteId, QWidget *dialogParent)
{
    const std::optional<Palette> palette = m_paletteStorage.palette(paletteId);
    if (!palette)
        return;
    QStringList filters;
    for (const ExchangeFormat format : PaletteExchange::allFormats)
        filters.append(exportFilter(format));
    QString filter = filters.first();
    const QString folder = m_exportFolder.isEmpty() ? QDir::homePath() : m_exportFolder;
    const QString suggested = QDir(folder).filePath(fileNameFor(palette->name) + QStringLiteral(".gpl"));
    const QString path = QFileDialog::getSaveFileName(dialogParent, tr("Export Palette"), suggested,
                                                      filters.join(QStringLiteral(";;")), &filter);
    if (path.isEmpty())
        return;
    m_exportFolder = QFileInfo(path).absolutePath();
    const qsizetype chosen = qMax<qsizetype>(0, filters.indexOf(filter));
    exportPaletteToFile(paletteId, path, PaletteExchange::allFormats[chosen]);
}

void ListActions::exportPaletteToFile(const QUuid &paletteId, const QString &path, ExchangeFormat format)
{
    const std::optional<Palette> palette = m_paletteStorage.palette(paletteId);
    if (!palette)
        return;
    QString target = path;
    if (const std::optional<ExchangeFormat> named = PaletteExchange::formatForFileName(path))
        format = *named;
    else
        target += u'.' + PaletteExchange::suffix(format);
    const QByteArray data = PaletteExchange::write(format, PaletteExchange::fromPalette(*palette));
    const QString error = PaletteFiles::write(target, data);
    if (error.isEmpty())
        emit paletteExported(QFileInfo(target).fileName());
    else
        emit exportFailed(QFileInfo(target).fileName(), error);
}

void ListActions::copyPaletteAsCss(const QUuid &paletteId)
{
    if (const std::optional<Palette> palette = m_paletteStorage.palette(paletteId))
        copyToClipboard(QString::fromUtf8(
            PaletteExchange::write(ExchangeFormat::Css, PaletteExchange::fromPalette(*palette))));
}
