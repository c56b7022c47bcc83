#include "HistoryTab.h"

#include "AddToPaletteFlow.h"
#include "ClipboardWriter.h"
#include "ColorListModel.h"
#include "DarkStyle.h"
#include "EmptyState.h"
#include "HistoryRowDelegate.h"
#include "StyledListView.h"
#include "Theme.h"
#include "storage/HistoryStorage.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

HistoryTab::HistoryTab(HistoryStorage &historyStorage, PaletteStorage &paletteStorage, QWidget *parent)
    : QWidget(parent)
    , m_historyStorage(historyStorage)
    , m_addToPalette(new AddToPaletteFlow(paletteStorage, this))
{
    // Made in reading order, which is the order of Tab and of screen readers.
    QLabel *title =
        Theme::makeLabel(tr("Recent Colors"), Theme::font(13, QFont::DemiBold), Theme::primaryText(), this);
    m_clearButton = Theme::makeButton(Theme::ButtonKind::Plain, tr("Clear"), this);
    m_clearButton->setFont(Theme::font(12));
    m_clearButton->setProperty("textColor", Theme::secondaryText());
    auto *header = new QHBoxLayout;
    header->setContentsMargins(12, 10, 12, 10);
    header->addWidget(title);
    header->addStretch(1);
    header->addWidget(m_clearButton);

    // Rows 32 high, 8 apart, 12 from every edge.
    m_model = new ColorListModel(historyStorage, this);
    m_list = new StyledListView(this);
    m_list->setAccessibleName(tr("Recent Colors"));
    m_list->setModel(m_model);
    m_list->setItemDelegate(new HistoryRowDelegate(m_list));
    m_list->setSpacing(4);
    m_list->setPadding(8);
    m_list->setRowsClickable(true);

    m_emptyState = new EmptyState(QStringLiteral("clock"), 32, 12, this);
    m_emptyState->addCaption(tr("No colors yet"), 13, Theme::secondaryText());
    m_emptyState->addCaption(tr("Pick colors to see them here"), 11,
                             Theme::withAlpha(Theme::secondaryText(), 0.7));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(header);
    layout->addWidget(Theme::makeDivider(0.5, this));
    layout->addWidget(m_list, 1);
    layout->addWidget(m_emptyState, 1);

    // The header keeps its height whether "Clear" shows or not.
    title->setMinimumHeight(qMax(title->sizeHint().height(), m_clearButton->sizeHint().height()));

    const auto copyHex = [](const QModelIndex &row) {
        copyToClipboard(row.data(ColorListModel::HexRole).toString());
    };
    connect(m_list, &StyledListView::triggered, this, copyHex);
    connect(m_list, &StyledListView::copyRequested, this, copyHex);
    connect(m_list, &StyledListView::menuRequested, this, &HistoryTab::showMenu);
    connect(m_clearButton, &QAbstractButton::clicked, &historyStorage, &HistoryStorage::clear);
    connect(&historyStorage, &HistoryStorage::colorsChanged, this, &HistoryTab::refresh);
    refresh();
}

void HistoryTab::showMenu(const QModelIndex &row, const QPoint &at)
{
    const QPersistentModelIndex kept(row);
    auto *menu = new QMenu(m_list);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Copy Hex"), this,
                    [kept] { copyToClipboard(kept.data(ColorListModel::HexRole).toString()); });
    menu->addAction(tr("Add to Palette"), this, [this, kept] { showAddSheet(kept); });
    menu->addSeparator();
    // Every entry with this id.
    menu->addAction(tr("Remove"), this, [this, kept] { m_model->removeRow(kept.row()); });
    menu->popup(at);
}

void HistoryTab::refresh()
{
    const bool empty = m_historyStorage.colors().isEmpty();
    // Clicked away, "Clear" leaves focus nowhere rather than handing a
    // focus ring to the tab bar.
    if (empty && m_clearButton->hasFocus() && !DarkStyle::showsFocusRing(m_clearButton))
        m_clearButton->clearFocus();
    m_clearButton->setVisible(!empty);
    m_list->setVisible(!empty);
    m_emptyState->setVisible(empty);
}

void HistoryTab::showAddSheet(const QModelIndex &row)
{
    const std::optional<ColorItem> color = m_model->color(row);
    if (!color)
        return;
    // Read again at "Add": the entry may have gone meanwhile.
    const QPersistentModelIndex kept(row);
    m_addToPalette->open([this, kept] { return m_model->color(kept); }, color->name);
}
