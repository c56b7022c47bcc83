#include "MenuBarPickerView.h"

#include "AddColorSheet.h"
#include "ColorDisplayView.h"
#include "PickedColorPreview.h"
#include "StyledButton.h"
#include "TextPromptDialog.h"
#include "Theme.h"
#include "picking/TintwrightService.h"
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

MenuBarPickerView::MenuBarPickerView(TintwrightService &tintwrightService,
                                     PaletteStorage &paletteStorage, HistoryStorage &historyStorage,
                                     QWidget *parent)
    : QWidget(parent),
      m_tintwrightService(tintwrightService),
      m_paletteStorage(paletteStorage),
      m_historyStorage(historyStorage)
{
    setObjectName(QStringLiteral("pickerView"));
    m_layout = new QVBoxLayout(this);
    m_layout->setContentsMargins(12, 12, 12, 12);
    m_layout->setSpacing(12);

    m_preview = new PickedColorPreview(this);
    m_layout->addWidget(m_preview, 1);

    m_pickButton = new StyledButton(StyledButton::Kind::Prominent, tr("Pick Color"), this);
    m_pickButton->setObjectName(QStringLiteral("pickButton"));
    m_pickButton->setSymbol(QStringLiteral("eyedropper"));
    m_pickButton->setVerticalPadding(10);
    m_pickButton->setEnabled(!m_tintwrightService.isPicking());
    connect(m_pickButton, &QAbstractButton::clicked, this, &MenuBarPickerView::pickColor);
    m_layout->addWidget(m_pickButton);

    // Slot 2 holds the color display while there is a picked color.
    m_noPalettesRow = new QWidget(this);
    m_noPalettesRow->setObjectName(QStringLiteral("noPalettesRow"));
    auto *noPalettes = new QHBoxLayout(m_noPalettesRow);
    noPalettes->setContentsMargins(0, 0, 0, 0);
    noPalettes->setSpacing(4);
    auto *noPalettesText = new QLabel(tr("No palettes yet."), m_noPalettesRow);
    noPalettesText->setFont(Theme::font(12));
    Theme::setTextColor(noPalettesText, Theme::secondaryText());
    auto *createOne = new StyledButton(StyledButton::Kind::Link, tr("Create one"), m_noPalettesRow);
    createOne->setObjectName(QStringLiteral("createOneButton"));
    createOne->setFont(Theme::font(12));
    connect(createOne, &QAbstractButton::clicked, this, &MenuBarPickerView::showNewPalettePrompt);
    noPalettes->addStretch(1);
    noPalettes->addWidget(noPalettesText);
    noPalettes->addWidget(createOne);
    noPalettes->addStretch(1);
    m_layout->addWidget(m_noPalettesRow);

    m_addToPaletteButton = new StyledButton(StyledButton::Kind::Bordered, tr("Add to Palette"), this);
    m_addToPaletteButton->setObjectName(QStringLiteral("addToPaletteButton"));
    m_addToPaletteButton->setSymbol(QStringLiteral("plus"));
    m_addToPaletteButton->setVerticalPadding(8);
    connect(m_addToPaletteButton, &QAbstractButton::clicked, this, &MenuBarPickerView::showAddSheet);
    m_layout->addWidget(m_addToPaletteButton);

    connect(&m_tintwrightService, &TintwrightService::pickedColorChanged, this,
            &MenuBarPickerView::refreshColor);
    connect(&m_tintwrightService, &TintwrightService::isPickingChanged, m_pickButton,
            [this](bool isPicking) { m_pickButton->setEnabled(!isPicking); });
    connect(&m_paletteStorage, &PaletteStorage::palettesChanged, this,
            &MenuBarPickerView::refreshPaletteRow);
    refreshColor();
}

void MenuBarPickerView::refreshColor()
{
    const std::optional<ColorItem> picked = m_tintwrightService.pickedColor();
    m_preview->setColorItem(picked);
    if (picked) {
        if (!m_colorDisplay) {
            m_colorDisplay = new ColorDisplayView(*picked, this);
            m_layout->insertWidget(2, m_colorDisplay);
            // Created after the buttons below it: Tab must still reach its
            // copy buttons before "Add to Palette".
            QWidget *previous = m_pickButton;
            for (QWidget *child : m_colorDisplay->findChildren<QWidget *>()) {
                if (child->focusPolicy() & Qt::TabFocus) {
                    setTabOrder(previous, child);
                    previous = child;
                }
            }
        } else if (m_colorDisplay->colorItem() != *picked) {
            m_colorDisplay->setColorItem(*picked);
        }
    } else {
        delete m_colorDisplay;
        m_colorDisplay = nullptr;
    }
    refreshPaletteRow();
}

void MenuBarPickerView::refreshPaletteRow()
{
    const bool picked = m_tintwrightService.pickedColor().has_value();
    const bool noPalettes = m_paletteStorage.palettes().isEmpty();
    m_noPalettesRow->setVisible(picked && noPalettes);
    m_addToPaletteButton->setVisible(picked && !noPalettes);
}

void MenuBarPickerView::pickColor()
{
    if (m_tintwrightService.isPicking())
        return;
    // The history is filled when the pick ends even if this view has gone
    // meanwhile: the service and the history outlive it.
    TintwrightService &service = m_tintwrightService;
    HistoryStorage &history = m_historyStorage;
    connect(
        &service, &TintwrightService::pickFinished, &history,
        [&service, &history] {
            if (const std::optional<ColorItem> picked = service.pickedColor())
                history.addColor(*picked);
        },
        Qt::SingleShotConnection);
    service.pickColor();
}

void MenuBarPickerView::showAddSheet()
{
    const std::optional<ColorItem> picked = m_tintwrightService.pickedColor();
    m_colorName = picked ? picked->name : tr("Untitled");
    if (m_addSheet)
        m_addSheet->close();
    m_addSheet = new AddColorSheet(m_paletteStorage, m_colorName, m_preselectedPaletteId, this);
    connect(m_addSheet, &AddColorSheet::colorNameEdited, this,
            [this](const QString &name) { m_colorName = name; });
    connect(m_addSheet, &AddColorSheet::paletteChosen, this,
            [this](const QUuid &id) { m_preselectedPaletteId = id; });
    connect(m_addSheet, &AddColorSheet::addRequested, this, &MenuBarPickerView::fileColor);
    m_addSheet->open();
}

void MenuBarPickerView::showNewPalettePrompt()
{
    if (m_prompt)
        m_prompt->close();
    m_prompt = TextPromptDialog::newPalettePrompt(this);
    connect(m_prompt, &TextPromptDialog::textAccepted, this, &MenuBarPickerView::createPalette);
    m_prompt->open();
}

void MenuBarPickerView::createPalette(const QString &newPaletteName)
{
    // An empty name makes nothing; blanks are a name like any other.
    if (newPaletteName.isEmpty())
        return;
    const Palette palette = m_paletteStorage.createPalette(newPaletteName);
    m_preselectedPaletteId = palette.id;
    // Straight on to filing the color in the palette just made.
    showAddSheet();
}

void MenuBarPickerView::fileColor(const QUuid &paletteId, const QString &name)
{
    const std::optional<ColorItem> picked = m_tintwrightService.pickedColor();
    if (!picked)
        return;
    // Same id as the history entry of this pick, by design.
    m_paletteStorage.addColor(picked->renamed(name), paletteId);
}
