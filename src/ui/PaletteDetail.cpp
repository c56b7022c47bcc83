#include "PaletteDetail.h"

#include "ClipboardWriter.h"
#include "ColorListModel.h"
#include "ElidedLabel.h"
#include "EmptyState.h"
#include "PaletteColorDelegate.h"
#include "PaletteFiles.h"
#include "StyledListView.h"
#include "Theme.h"
#include "storage/PaletteStorage.h"

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

PaletteDetail::PaletteDetail(PaletteStorage &paletteStorage, const QUuid &paletteId,
                             PaletteFiles &paletteFiles, QWidget *parent)
    : QWidget(parent)
    , m_paletteStorage(paletteStorage)
    , m_paletteFiles(paletteFiles)
    , m_paletteId(paletteId)
    , m_model(new ColorListModel(paletteStorage, paletteId, this))
    , m_backButton(
          Theme::makeButton(Theme::ButtonKind::Plain, tr("Back"), this, QStringLiteral("chevron.left")))
    , m_name(new ElidedLabel(QString(), this))
    , m_list(new StyledListView(this))
    , m_emptyState(new EmptyState(QStringLiteral("swatchpalette"), 36, 10, this))
{
    m_backButton->setFont(Theme::font(13, QFont::DemiBold));
    m_backButton->setShortcut(QKeySequence::Back);
    connect(m_backButton, &QAbstractButton::clicked, this, &PaletteDetail::backRequested);
    m_name->setFont(Theme::font(13, QFont::DemiBold));
    m_name->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto *header = new QHBoxLayout;
    header->setContentsMargins(4, 0, 4, 0);
    header->setSpacing(8);
    header->addWidget(m_backButton);
    header->addWidget(m_name, 1);

    // Rows 2 apart and 12 from the tab's edges, with the tab's margin of 8.
    m_list->setModel(m_model);
    m_list->setItemDelegate(new PaletteColorDelegate(m_list));
    m_list->setSpacing(1);
    m_list->setPadding(3);
    connect(m_list, &StyledListView::copyRequested, this,
            [](const QModelIndex &row) { copyToClipboard(row.data(ColorListModel::HexRole).toString()); });
    connect(m_list, &StyledListView::menuRequested, this, &PaletteDetail::showColorMenu);
    m_emptyState->addCaption(tr("No colors in this palette"), 13, Theme::secondaryText());
    m_emptyState->setContentsMargins(4, 4, 4, 4); // as far from the edges as the list's rows

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addLayout(header);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_emptyState, 1);

    connect(&paletteStorage, &PaletteStorage::palettesChanged, this, &PaletteDetail::refresh);
    refresh();
}

void PaletteDetail::refresh()
{
    for (const Palette &palette : m_paletteStorage.palettes()) {
        if (palette.id != m_paletteId)
            continue;
        m_name->setText(palette.name);
        m_name->setAccessibleName(palette.name);
        m_list->setAccessibleName(palette.name);
        m_list->setVisible(!palette.colors.isEmpty());
        m_emptyState->setVisible(palette.colors.isEmpty());
    }
}

void PaletteDetail::contextMenuEvent(QContextMenuEvent *event)
{
    showPaletteMenu(event->reason() == QContextMenuEvent::Mouse ? event->globalPos() : underHeader());
}

void PaletteDetail::keyPressEvent(QKeyEvent *event)
{
    // Shift+F10 that no row took: the keyboard's way to the same menu.
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        showPaletteMenu(underHeader());
        return;
    }
    QWidget::keyPressEvent(event);
}

// From the keyboard, the menu opens under the palette's name.
QPoint PaletteDetail::underHeader() const
{
    return m_name->mapToGlobal(QPoint(m_name->width() / 2, m_name->height()));
}

void PaletteDetail::showPaletteMenu(const QPoint &globalPos)
{
    if (!m_paletteStorage.palette(m_paletteId))
        return;
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QUuid id = m_paletteId;
    PaletteFiles &files = m_paletteFiles;
    menu->addAction(tr("Export…"), &files, [&files, id] { files.showExportDialog(id); });
    menu->addAction(tr("Copy as CSS"), &files, [&files, id] { files.copyAsCss(id); });
    menu->popup(globalPos);
}

void PaletteDetail::showColorMenu(const QModelIndex &row, const QPoint &globalPos)
{
    const QPersistentModelIndex kept(row);
    auto *menu = new QMenu(m_list);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Copy Hex"), this,
                    [kept] { copyToClipboard(kept.data(ColorListModel::HexRole).toString()); });
    menu->addSeparator();
    menu->addAction(tr("Delete"), this, [this, kept] { m_model->removeRow(kept.row()); });
    menu->popup(globalPos);
}
