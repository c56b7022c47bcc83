#include "HistoryTab.h"

#include "AddToPaletteFlow.h"
#include "ColorListModel.h"
#include "EmptyState.h"
#include "HistoryRowDelegate.h"
#include "ListActions.h"
#include "StyledButton.h"
#include "StyledListView.h"
#include "Theme.h"
#include "storage/HistoryStorage.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {

std::optional<ColorItem> findColor(const HistoryStorage &historyStorage, const QUuid &id)
{
    for (const ColorItem &color : historyStorage.colors())
        if (color.id == id)
            return color;
    return std::nullopt;
}

} // namespace

HistoryTab::HistoryTab(HistoryStorage &historyStorage, PaletteStorage &paletteStorage,
                       ListActions &listActions, QWidget *parent)
    : QWidget(parent)
    , m_historyStorage(historyStorage)
    , m_addToPalette(new AddToPaletteFlow(paletteStorage, this))
{
    // Made in reading order, which is the order of Tab and of screen readers.
    QLabel *title =
        Theme::makeLabel(tr("Recent Colors"), Theme::font(13, QFont::DemiBold), Theme::primaryText(), this);
    m_clearButton = new StyledButton(StyledButton::Kind::Plain, tr("Clear"), this);
    m_clearButton->setFont(Theme::font(12));
    m_clearButton->setTextColor(Theme::secondaryText());
    auto *header = new QHBoxLayout;
    header->setContentsMargins(12, 10, 12, 10);
    header->addWidget(title);
    header->addStretch(1);
    header->addWidget(m_clearButton);

    // Rows 32 high, 8 apart, 12 from every edge.
    m_list = new StyledListView(this);
    m_list->setAccessibleName(tr("Recent Colors"));
    m_list->setModel(new ColorListModel(historyStorage, m_list));
    m_list->setItemDelegate(new HistoryRowDelegate(m_list));
    m_list->setSpacing(4);
    m_list->setPadding(8);
    m_list->setRowsClickable(true);
    listActions.attach(m_list);

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
    const int headerHeight = qMax(title->sizeHint().height(), m_clearButton->sizeHint().height());
    title->setMinimumHeight(headerHeight);

    connect(m_clearButton, &QAbstractButton::clicked, &historyStorage, &HistoryStorage::clear);
    connect(&listActions, &ListActions::addToPaletteRequested, this, &HistoryTab::showAddSheet);
    connect(&historyStorage, &HistoryStorage::colorsChanged, this, &HistoryTab::refresh);
    refresh();
}

void HistoryTab::refresh()
{
    const bool empty = m_historyStorage.colors().isEmpty();
    // Clicked away, "Clear" leaves focus nowhere rather than handing a
    // focus ring to the tab bar.
    if (empty && m_clearButton->hasFocus() && !m_clearButton->showsFocusRing())
        m_clearButton->clearFocus();
    m_clearButton->setVisible(!empty);
    m_list->setVisible(!empty);
    m_emptyState->setVisible(empty);
}

void HistoryTab::showAddSheet(const QUuid &colorId)
{
    const std::optional<ColorItem> color = findColor(m_historyStorage, colorId);
    if (!color)
        return;
    const HistoryStorage &history = m_historyStorage;
    m_addToPalette->open([&history, colorId] { return findColor(history, colorId); }, color->name);
}
