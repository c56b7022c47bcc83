#include "PalettesTab.h"

#include "EmptyState.h"
#include "IconButton.h"
#include "ListActions.h"
#include "NoticeLine.h"
#include "PaletteCardDelegate.h"
#include "PaletteDetail.h"
#include "PaletteListModel.h"
#include "StyledButton.h"
#include "StyledListView.h"
#include "TextPromptDialog.h"
#include "Theme.h"
#include "storage/PaletteFiles.h"
#include "storage/PaletteStorage.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {

QString countText(qsizetype count, const QString &one, const QString &many)
{
    return QStringLiteral("%1 %2").arg(count).arg(count == 1 ? one : many);
}

} // namespace

PalettesTab::PalettesTab(PaletteStorage &paletteStorage, ListActions &listActions, QWidget *parent)
    : QWidget(parent)
    , m_paletteStorage(paletteStorage)
    , m_listActions(listActions)
{
    // Made in reading order, which is the order of Tab and of screen readers.
    m_listPage = new QWidget(this);
    QLabel *title = Theme::makeLabel(tr("Palettes"), Theme::font(13, QFont::DemiBold), Theme::secondaryText(),
                                     m_listPage);
    auto *import = new IconButton(QStringLiteral("square.and.arrow.down"), tr("Import Palette…"), m_listPage);
    import->setSizes(14, 22);
    import->setColor(Theme::primaryText());
    auto *plus = new IconButton(QStringLiteral("plus"), tr("New Palette"), m_listPage);
    plus->setSizes(14, 22);
    plus->setColor(Theme::primaryText());
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
    listActions.attach(m_list);
    m_emptyState = new EmptyState(QStringLiteral("swatchpalette"), 36, 10, m_listPage);
    m_emptyState->setContentsMargins(4, 4, 4, 4); // as far from the edges as the list's rows
    m_emptyState->addCaption(tr("No palettes yet"), 13, Theme::secondaryText());
    m_createButton = new StyledButton(StyledButton::Kind::Prominent, tr("Create Palette"), m_emptyState);
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

    connect(import, &QAbstractButton::clicked, this, &PalettesTab::showImportDialog);
    connect(plus, &QAbstractButton::clicked, this, &PalettesTab::showNewPalettePrompt);
    connect(m_createButton, &QAbstractButton::clicked, this, &PalettesTab::showNewPalettePrompt);
    connect(&listActions, &ListActions::paletteOpened, this, &PalettesTab::openPalette);
    connect(&paletteStorage, &PaletteStorage::palettesChanged, this, &PalettesTab::refresh);
    connect(&listActions, &ListActions::paletteExported, this, [this](const QString &fileName) {
        m_notice->showNotice(tr("Exported \"%1\"").arg(fileName), NoticeLine::Kind::Done);
    });
    connect(&listActions, &ListActions::exportFailed, this,
            [this](const QString &fileName, const QString &why) {
                m_notice->showNotice(tr("Could not export \"%1\": %2").arg(fileName, why),
                                     NoticeLine::Kind::Failed);
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
    m_detail = new PaletteDetail(m_paletteStorage, id, m_listActions, this);
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

void PalettesTab::showImportDialog()
{
    const QStringList paths =
        QFileDialog::getOpenFileNames(window(), tr("Import Palette"), QString(),
                                      tr("Palettes (*.gpl *.ase *.css *.scss *.txt *.json);;All Files (*)"));
    if (!paths.isEmpty())
        importFiles(paths);
}

void PalettesTab::importFiles(const QStringList &paths)
{
    QStringList failures;
    QString done;
    QUuid lastImported;
    int imported = 0;
    for (const QString &path : paths) {
        const QString fileName = QFileInfo(path).fileName();
        const ExchangeResult result = PaletteFiles::read(path);
        if (!result.palette) {
            failures.append(tr("Could not import \"%1\": %2").arg(fileName, result.error));
            continue;
        }
        const ExchangePalette &palette = *result.palette;
        lastImported = m_paletteStorage.createPalette(palette.name, PaletteExchange::colorItems(palette)).id;
        ++imported;
        done = tr("Imported \"%1\": %2")
                   .arg(fileName, countText(palette.colors.size(), tr("color"), tr("colors")));
        if (palette.skippedLab > 0)
            done += tr(", %1 skipped").arg(countText(palette.skippedLab, tr("LAB color"), tr("LAB colors")));
        if (palette.skippedUnreadable > 0)
            done += tr(", %1 skipped")
                        .arg(countText(palette.skippedUnreadable, tr("unreadable entry"),
                                       tr("unreadable entries")));
    }
    if (imported > 0) {
        showList();
        const QModelIndex index = m_model->indexOf(lastImported);
        m_list->setCurrentIndex(index);
        m_list->scrollTo(index);
    }
    if (!failures.isEmpty()) {
        QString line = failures.first();
        if (failures.size() > 1)
            line += tr(" (and %1 more)").arg(failures.size() - 1);
        m_notice->showNotice(line, NoticeLine::Kind::Failed);
    } else if (imported == 1) {
        m_notice->showNotice(done, NoticeLine::Kind::Done);
    } else if (imported > 1) {
        m_notice->showNotice(tr("Imported %1 palettes").arg(imported), NoticeLine::Kind::Done);
    }
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
