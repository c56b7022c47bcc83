#include "HistoryView.h"

#include "AddColorSheet.h"
#include "HistoryColorRow.h"
#include "RoundedSwatch.h"
#include "StyledButton.h"
#include "SymbolView.h"
#include "Theme.h"
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace {
constexpr int swatchWidth = 40;
constexpr int swatchHeight = HistoryColorRow::rowHeight;
constexpr int lineSpacing = 8;
} // namespace

HistoryView::HistoryView(HistoryStorage &historyStorage, TintwrightService &tintwrightService,
                         PaletteStorage &paletteStorage, QWidget *parent)
    : QWidget(parent),
      m_historyStorage(historyStorage),
      m_tintwrightService(tintwrightService),
      m_paletteStorage(paletteStorage)
{
    setObjectName(QStringLiteral("historyView"));
    m_layout = new QVBoxLayout(this);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);

    auto *header = new QWidget(this);
    header->setObjectName(QStringLiteral("historyHeader"));
    auto *headerLayout = new QHBoxLayout(header);
    headerLayout->setContentsMargins(12, 10, 12, 10);
    auto *title = new QLabel(tr("Recent Colors"), header);
    title->setObjectName(QStringLiteral("historyTitle"));
    title->setFont(Theme::font(13, QFont::DemiBold));
    m_clearButton = new StyledButton(StyledButton::Kind::Plain, tr("Clear"), header);
    m_clearButton->setObjectName(QStringLiteral("clearButton"));
    m_clearButton->setFont(Theme::font(12));
    m_clearButton->setTextColor(Theme::secondaryText());
    connect(m_clearButton, &QAbstractButton::clicked, &m_historyStorage, &HistoryStorage::clear);
    headerLayout->addWidget(title);
    headerLayout->addStretch(1);
    headerLayout->addWidget(m_clearButton);
    // The header keeps its height whether "Clear" shows or not.
    header->setFixedHeight(20 + qMax(QFontMetrics(title->font()).height(), m_clearButton->sizeHint().height()));
    m_layout->addWidget(header);
    m_layout->addWidget(Theme::makeDivider(0.5, this));

    connect(&m_historyStorage, &HistoryStorage::colorsChanged, this, &HistoryView::rebuild);
    rebuild();
}

void HistoryView::rebuild()
{
    const bool empty = m_historyStorage.colors().isEmpty();
    // Clicked away, "Clear" leaves focus nowhere rather than handing a
    // focus ring to the tab bar; reached by keyboard, Qt moves focus on.
    if (empty && m_clearButton->hasFocus() && !m_clearButton->showsFocusRing())
        m_clearButton->clearFocus();
    m_clearButton->setVisible(!empty);

    int scrollValue = 0;
    if (auto *oldScroll = qobject_cast<QScrollArea *>(m_body))
        scrollValue = oldScroll->verticalScrollBar()->value();
    const bool hadFocus = m_body && m_body->isAncestorOf(focusWidget());

    QWidget *body = empty ? buildEmptyState() : buildList();
    if (m_body) {
        delete m_layout->replaceWidget(m_body, body);
        // Later: the change may come from a row of the old list.
        m_body->hide();
        m_body->deleteLater();
    } else {
        m_layout->addWidget(body, 1);
    }
    m_body = body;
    m_layout->setStretchFactor(body, 1);
    body->show();
    if (auto *scroll = qobject_cast<QScrollArea *>(body)) {
        scroll->verticalScrollBar()->setValue(scrollValue);
        if (hadFocus && !rows().isEmpty())
            rows().first()->setFocus(Qt::OtherFocusReason);
    }
}

QWidget *HistoryView::buildEmptyState()
{
    auto *state = new QWidget(this);
    state->setObjectName(QStringLiteral("historyEmptyState"));
    auto *layout = new QVBoxLayout(state);
    layout->setSpacing(12);
    layout->addStretch(1);
    auto *clock = new SymbolView(QStringLiteral("clock"), Theme::withAlpha(Theme::secondaryText(), 0.5), 32,
                                 state);
    layout->addWidget(clock, 0, Qt::AlignHCenter);
    auto *noColors = new QLabel(tr("No colors yet"), state);
    noColors->setFont(Theme::font(13));
    noColors->setAlignment(Qt::AlignHCenter);
    Theme::setTextColor(noColors, Theme::secondaryText());
    layout->addWidget(noColors);
    auto *hint = new QLabel(tr("Pick colors to see them here"), state);
    hint->setFont(Theme::font(11));
    hint->setAlignment(Qt::AlignHCenter);
    Theme::setTextColor(hint, Theme::withAlpha(Theme::secondaryText(), 0.7));
    layout->addWidget(hint);
    layout->addStretch(1);
    return state;
}

QWidget *HistoryView::buildList()
{
    auto *scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("historyList"));
    // The rows take focus; the scroll area itself is no stop for Tab.
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setAutoFillBackground(false);
    scroll->viewport()->setAutoFillBackground(false);
    Theme::styleScrollBars(scroll);

    auto *content = new QWidget;
    content->setAutoFillBackground(false);
    auto *columns = new QHBoxLayout(content);
    columns->setContentsMargins(12, 12, 12, 12);
    columns->setSpacing(12);
    auto *swatches = new QVBoxLayout;
    swatches->setSpacing(lineSpacing);
    auto *rowsColumn = new QVBoxLayout;
    rowsColumn->setSpacing(lineSpacing);

    // Both columns step by the same height and spacing, so row i stays
    // level with swatch i.
    for (const ColorItem &color : m_historyStorage.colors()) {
        auto *swatch = new RoundedSwatch(6, content);
        swatch->setObjectName(QStringLiteral("historySwatch"));
        swatch->setFixedSize(swatchWidth, swatchHeight);
        swatch->setColor(QColor::fromRgbF(float(qBound(0.0, color.red, 1.0)), float(qBound(0.0, color.green, 1.0)),
                                          float(qBound(0.0, color.blue, 1.0)),
                                          float(qBound(0.0, color.alpha, 1.0))));
        swatch->setStroke(QColor(255, 255, 255, 38), 0.5);
        swatches->addWidget(swatch);

        auto *row = new HistoryColorRow(color, m_historyStorage, content);
        connect(row, &HistoryColorRow::addToPaletteRequested, this,
                [this, color] { showAddSheet(color); });
        rowsColumn->addWidget(row);
    }
    swatches->addStretch(1);
    rowsColumn->addStretch(1);
    columns->addLayout(swatches);
    columns->addLayout(rowsColumn, 1);
    scroll->setWidget(content);
    return scroll;
}

QList<HistoryColorRow *> HistoryView::rows() const
{
    if (!m_body)
        return {};
    return m_body->findChildren<HistoryColorRow *>();
}

bool HistoryView::showsEmptyState() const
{
    return m_body && m_body->objectName() == QLatin1String("historyEmptyState");
}

void HistoryView::showAddSheet(const ColorItem &color)
{
    m_colorToAdd = color;
    m_colorName = color.name;
    if (m_addSheet)
        m_addSheet->close();
    m_addSheet = new AddColorSheet(m_paletteStorage, m_colorName, m_selectedPaletteId, this);
    connect(m_addSheet, &AddColorSheet::colorNameEdited, this,
            [this](const QString &name) { m_colorName = name; });
    connect(m_addSheet, &AddColorSheet::paletteChosen, this,
            [this](const QUuid &id) { m_selectedPaletteId = id; });
    connect(m_addSheet, &AddColorSheet::addRequested, this, &HistoryView::fileColor);
    m_addSheet->open();
}

void HistoryView::fileColor(const QUuid &paletteId, const QString &name)
{
    if (!m_colorToAdd)
        return;
    // Same id as the history entry; the history itself is left as it is.
    m_paletteStorage.addColor(m_colorToAdd->renamed(name), paletteId);
}
