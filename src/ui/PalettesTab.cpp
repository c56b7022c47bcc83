#include "PalettesTab.h"

#include "EmptyState.h"
#include "NoticeLine.h"
#include "PaletteCardDelegate.h"
#include "PaletteDetail.h"
#include "PaletteFiles.h"
#include "PaletteListModel.h"
#include "StyledListView.h"
#include "TextPromptDialog.h"
#include "Theme.h"
#include "storage/PaletteStorage.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

PalettesTab::PalettesTab(PaletteStorage &paletteStorage, PaletteFiles &paletteFiles, QWidget *parent)
    : QWidget(parent)
    , m_paletteStorage(paletteStorage)
    , m_paletteFiles(paletteFiles)
{
    // Made in reading order, which is the order of Tab and of screen readers.
    m_listPage = new QWidget(this);
    QLabel *title = Theme::makeLabel(tr("Palettes"), Theme::font(13, QFont::DemiBold), Theme::secondaryText(),
                                     m_listPage);
    QPushButton *import = Theme::makeIconButton(QStringLiteral("square.and.arrow.down"),
                                                tr("Import Palette…"), 14, 22, m_listPage);
    QPushButton *plus = Theme::makeIconButton(QStringLiteral("plus"), tr("New Palette"), 14, 22, m_listPage);
    for (QPushButton *button : {import, plus})
        button->setProperty("textColor", Theme::primaryText());
    auto *header = new QHBoxLayout;
    header->setContentsMargins(4, 0, 4, 0);
    header->setSpacing(2);
    header->addWidget(title);
    header->addStretch(1);
    header->addWidget(import);
    header->addWidget(plus);

    // Cards 8 apart, flush with the header, with the tab's margin of 8.
    m_model = new PaletteListModel(paletteStorage, this);
    m_list = new StyledListView(m_listPage);
    m_list->setAccessibleName(tr("Palettes"));
    m_list->setModel(m_model);
    m_list->setItemDelegate(new PaletteCardDelegate(m_list));
    m_list->setSpacing(4);
    m_list->setRowsClickable(true);
    connect(m_list, &StyledListView::triggered, this,
            [this](const QModelIndex &row) { openPalette(row.data(PaletteListModel::IdRole).toUuid()); });
    connect(m_list, &StyledListView::menuRequested, this, &PalettesTab::showMenu);
    m_emptyState = new EmptyState(QStringLiteral("swatchpalette"), 36, 10, m_listPage);
    m_emptyState->setContentsMargins(4, 4, 4, 4); // as far from the edges as the list's rows
    m_emptyState->addCaption(tr("No palettes yet"), 13, Theme::secondaryText());
    m_createButton = Theme::makeButton(Theme::ButtonKind::Prominent, tr("Create Palette"), m_emptyState);
    m_emptyState->addWidget(m_createButton);

    auto *page = new QVBoxLayout(m_listPage);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(4);
    page->addLayout(header);
    page->addWidget(m_list, 1);
    page->addWidget(m_emptyState, 1);

    m_notice = new NoticeLine(this);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 10, 8, 8);
    layout->addWidget(m_listPage, 1);
    layout->addWidget(m_notice);

    connect(import, &QAbstractButton::clicked, &paletteFiles, &PaletteFiles::showImportDialog);
    connect(plus, &QAbstractButton::clicked, this, &PalettesTab::showNewPalettePrompt);
    connect(m_createButton, &QAbstractButton::clicked, this, &PalettesTab::showNewPalettePrompt);
    connect(&paletteStorage, &PaletteStorage::palettesChanged, this, &PalettesTab::refresh);
    connect(&paletteFiles, &PaletteFiles::imported, this, &PalettesTab::showImported);
    connect(&paletteFiles, &PaletteFiles::notice, this, [this](const QString &line, bool failed) {
        m_notice->showNotice(line, failed ? NoticeLine::Kind::Failed : NoticeLine::Kind::Done);
    });
    refresh();
}

std::optional<QUuid> PalettesTab::selectedPaletteId() const
{
    return m_detail ? std::optional<QUuid>(m_detail->paletteId()) : std::nullopt;
}

void PalettesTab::openPalette(const QUuid &id)
{
    if (!m_paletteStorage.palette(id))
        return;
    const bool hadFocus = isAncestorOf(QApplication::focusWidget());
    delete m_detail;
    m_notice->dismiss();
    m_detail = new PaletteDetail(m_paletteStorage, id, m_paletteFiles, this);
    connect(m_detail, &PaletteDetail::backRequested, this, &PalettesTab::showList);
    static_cast<QVBoxLayout *>(layout())->insertWidget(1, m_detail, 1);
    m_listPage->hide();
    if (hadFocus)
        m_detail->backButton()->setFocus(Qt::OtherFocusReason);
}

void PalettesTab::showList()
{
    if (!m_detail)
        return;
    const QUuid id = m_detail->paletteId();
    const bool hadFocus = m_detail->isAncestorOf(QApplication::focusWidget());
    // Later: this may run inside the detail's own "Back".
    m_detail->hide();
    m_detail->deleteLater();
    m_detail = nullptr;
    m_listPage->show();
    // Focus goes back to the palette that was open.
    if (hadFocus && !m_list->isHidden()) {
        m_list->setCurrentIndex(m_model->indexOf(id));
        m_list->setFocus(Qt::OtherFocusReason);
    } else if (hadFocus) {
        m_createButton->setFocus(Qt::OtherFocusReason);
    }
}

void PalettesTab::showImported(const QUuid &id)
{
    showList();
    const QModelIndex index = m_model->indexOf(id);
    m_list->setCurrentIndex(index);
    m_list->scrollTo(index);
}

void PalettesTab::showMenu(const QModelIndex &row, const QPoint &at)
{
    const QPersistentModelIndex kept(row);
    const QUuid id = row.data(PaletteListModel::IdRole).toUuid();
    PaletteFiles &files = m_paletteFiles;
    auto *menu = new QMenu(m_list);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Export…"), &files, [&files, id] { files.showExportDialog(id); });
    menu->addAction(tr("Copy as CSS"), &files, [&files, id] { files.copyAsCss(id); });
    menu->addSeparator();
    menu->addAction(tr("Delete"), this, [this, kept] { m_model->removeRow(kept.row()); });
    menu->popup(at);
}

void PalettesTab::refresh()
{
    if (m_detail && !m_paletteStorage.palette(m_detail->paletteId()))
        showList();
    const bool empty = m_paletteStorage.palettes().isEmpty();
    const bool listHadFocus = m_list->hasFocus();
    m_list->setVisible(!empty);
    m_emptyState->setVisible(empty);
    if (empty && listHadFocus)
        m_createButton->setFocus(Qt::OtherFocusReason);
}

void PalettesTab::showNewPalettePrompt()
{
    if (m_prompt) {
        m_prompt->raise();
        m_prompt->activateWindow();
        return;
    }
    m_prompt = TextPromptDialog::newPalettePrompt(QString(), this);
    // An empty name creates nothing; any other text, blanks included, is
    // the name exactly as typed. The new palette is not opened.
    PaletteStorage &storage = m_paletteStorage;
    connect(m_prompt, &TextPromptDialog::textAccepted, this, [&storage](const QString &name) {
        if (!name.isEmpty())
            storage.createPalette(name);
    });
    m_prompt->open();
}

TextPromptDialog *PalettesTab::newPalettePrompt() const
{
    return m_prompt;
}

PaletteDetail *PalettesTab::detail() const
{
    return m_detail;
}
