#include "MenuBarPalettesView.h"

#include "IconButton.h"
#include "MenuBarPaletteDetailView.h"
#include "MenuBarPaletteRow.h"
#include "PaletteColorRow.h"
#include "PaletteViewParts.h"
#include "StyledButton.h"
#include "TextPromptDialog.h"
#include "Theme.h"
#include "storage/PaletteStorage.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

namespace {

// Focus survives a rebuild by these properties: the same control when it
// is still there, else the row now at the same place in its list.
const char focusKeyProperty[] = "tintwrightFocusKey";
const char focusIndexProperty[] = "tintwrightFocusIndex";

void tagForFocus(QWidget *widget, const QString &key, int index = -1)
{
    widget->setProperty(focusKeyProperty, key);
    widget->setProperty(focusIndexProperty, index);
}

QString paletteKey(const QUuid &id)
{
    return QStringLiteral("palette:") + id.toString(QUuid::WithoutBraces);
}

QString colorKey(const QUuid &id)
{
    return QStringLiteral("color:") + id.toString(QUuid::WithoutBraces);
}

const QString backKey = QStringLiteral("back");
const QString plusKey = QStringLiteral("plus");
const QString createKey = QStringLiteral("create");

} // namespace

MenuBarPalettesView::MenuBarPalettesView(PaletteStorage &paletteStorage, TintwrightService &tintwrightService,
                                         QWidget *parent)
    : QWidget(parent)
    , m_paletteStorage(paletteStorage)
    , m_tintwrightService(tintwrightService)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 10, 12, 12);
    layout->setSpacing(0);
    connect(&m_paletteStorage, &PaletteStorage::palettesChanged, this, [this] { rebuild(); });
    rebuild();
}

std::optional<QUuid> MenuBarPalettesView::selectedPaletteId() const
{
    return m_selectedPaletteId;
}

void MenuBarPalettesView::openPalette(const QUuid &id)
{
    m_selectedPaletteId = id;
    m_pendingFocusKey = backKey;
    rebuild();
}

void MenuBarPalettesView::showList()
{
    if (m_selectedPaletteId)
        m_pendingFocusKey = paletteKey(*m_selectedPaletteId);
    m_selectedPaletteId.reset();
    rebuild();
}

QWidget *MenuBarPalettesView::buildList()
{
    auto *list = new QWidget(this);
    auto *layout = new QVBoxLayout(list);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);

    auto *title = new QLabel(tr("Palettes"), list);
    title->setFont(Theme::font(13, QFont::DemiBold));
    QPalette p = title->palette();
    p.setColor(QPalette::WindowText, Theme::secondaryText());
    title->setPalette(p);

    auto *plus = new IconButton(QStringLiteral("plus"), tr("New Palette"), list);
    plus->setSizes(14, 22);
    plus->setColor(Theme::primaryText());
    plus->setCursor(Qt::PointingHandCursor);
    tagForFocus(plus, plusKey);
    connect(plus, &QAbstractButton::clicked, this, &MenuBarPalettesView::showNewPalettePrompt);

    auto *header = new QHBoxLayout;
    header->setContentsMargins(0, 0, 0, 0);
    header->addWidget(title);
    header->addStretch(1);
    header->addWidget(plus);
    layout->addLayout(header);

    const QList<Palette> &palettes = m_paletteStorage.palettes();
    if (palettes.isEmpty()) {
        auto *create = new StyledButton(StyledButton::Kind::Prominent, tr("Create Palette"));
        create->setCursor(Qt::PointingHandCursor);
        tagForFocus(create, createKey);
        connect(create, &QAbstractButton::clicked, this, &MenuBarPalettesView::showNewPalettePrompt);
        layout->addWidget(PaletteViewParts::makeEmptyState(tr("No palettes yet"), create, list), 1);
        return list;
    }

    QList<QWidget *> rows;
    for (qsizetype i = 0; i < palettes.size(); ++i) {
        auto *row = new MenuBarPaletteRow(palettes.at(i), m_paletteStorage);
        tagForFocus(row, paletteKey(palettes.at(i).id), int(i));
        const QUuid id = palettes.at(i).id;
        connect(row, &MenuBarPaletteRow::tapped, this, [this, id] { openPalette(id); });
        rows.append(row);
    }
    layout->addWidget(PaletteViewParts::makeRowList(rows, 8, list), 1);
    return list;
}

QWidget *MenuBarPalettesView::buildDetail(const Palette &palette)
{
    auto *detail = new MenuBarPaletteDetailView(palette, m_paletteStorage, this);
    tagForFocus(detail->backButton(), backKey);
    const QList<PaletteColorRow *> rows = detail->colorRows();
    for (qsizetype i = 0; i < rows.size(); ++i)
        tagForFocus(rows.at(i), colorKey(rows.at(i)->colorId()), int(i));
    connect(detail, &MenuBarPaletteDetailView::backRequested, this, &MenuBarPalettesView::showList);
    return detail;
}

void MenuBarPalettesView::rebuild()
{
    // What had focus and how far the list was scrolled, to carry over.
    QWidget *focused = QApplication::focusWidget();
    const bool hadFocus = m_body && focused && m_body->isAncestorOf(focused);
    QString focusKey = hadFocus ? focused->property(focusKeyProperty).toString() : QString();
    const int focusIndex = hadFocus ? focused->property(focusIndexProperty).toInt() : -1;
    if (!m_pendingFocusKey.isEmpty())
        focusKey = std::exchange(m_pendingFocusKey, QString());
    const bool moveFocus = hadFocus || !focusKey.isEmpty();
    int scrollValue = -1;
    if (m_body)
        if (auto *area = m_body->findChild<QScrollArea *>())
            scrollValue = area->verticalScrollBar()->value();

    std::optional<Palette> selected;
    if (m_selectedPaletteId)
        selected = m_paletteStorage.palette(*m_selectedPaletteId);
    if (!selected)
        m_selectedPaletteId.reset();
    const QString bodyKey = selected ? paletteKey(selected->id) : QStringLiteral("list");

    QWidget *body = selected ? buildDetail(*selected) : buildList();
    if (m_body) {
        // Deferred: the rebuild may run inside an event of a widget being replaced.
        m_body->hide();
        m_body->deleteLater();
    }
    if (bodyKey != m_bodyKey)
        scrollValue = -1;
    m_body = body;
    m_bodyKey = bodyKey;
    layout()->addWidget(body);
    body->show();

    if (moveFocus)
        restoreFocus(focusKey, focusIndex);
    QPointer<QWidget> guard(body);
    QTimer::singleShot(0, body, [this, guard, scrollValue] {
        if (!guard || guard != m_body)
            return;
        auto *area = guard->findChild<QScrollArea *>();
        if (!area)
            return;
        if (scrollValue >= 0)
            area->verticalScrollBar()->setValue(scrollValue);
        QWidget *focus = QApplication::focusWidget();
        if (focus && area->widget() && area->widget()->isAncestorOf(focus))
            area->ensureWidgetVisible(focus, 0, 8);
    });
}

void MenuBarPalettesView::restoreFocus(const QString &key, int index)
{
    const QList<QWidget *> candidates = m_body->findChildren<QWidget *>();
    QList<QWidget *> rows;
    for (QWidget *w : candidates) {
        const QString k = w->property(focusKeyProperty).toString();
        if (k.isEmpty())
            continue;
        if (k == key) {
            w->setFocus(Qt::OtherFocusReason);
            return;
        }
        if (w->property(focusIndexProperty).toInt() >= 0)
            rows.append(w);
    }
    std::sort(rows.begin(), rows.end(), [](QWidget *a, QWidget *b) {
        return a->property(focusIndexProperty).toInt() < b->property(focusIndexProperty).toInt();
    });
    // The row that took the removed one's place, else the header control.
    if (index >= 0 && !rows.isEmpty()) {
        rows.at(qMin(qsizetype(index), rows.size() - 1))->setFocus(Qt::OtherFocusReason);
        return;
    }
    for (const QString &fallback : {backKey, createKey, plusKey})
        for (QWidget *w : candidates)
            if (w->property(focusKeyProperty).toString() == fallback) {
                w->setFocus(Qt::OtherFocusReason);
                return;
            }
}

void MenuBarPalettesView::showNewPalettePrompt()
{
    if (m_prompt) {
        m_prompt->raise();
        m_prompt->activateWindow();
        return;
    }
    auto *prompt = new TextPromptDialog(tr("New Palette"), QString(), tr("Palette name"), tr("Create"), this);
    prompt->setObjectName(QStringLiteral("newPalettePrompt"));
    m_prompt = prompt;
    // An empty name creates nothing; any other text, blanks included, is
    // the name exactly as typed. The new palette is not opened.
    PaletteStorage &storage = m_paletteStorage;
    connect(prompt, &TextPromptDialog::textAccepted, this, [&storage](const QString &name) {
        if (!name.isEmpty())
            storage.createPalette(name);
    });
    prompt->open();
}
