#include "AddColorSheet.h"

#include "ElidedLabel.h"
#include "PaletteMenu.h"
#include "RoundedLineEdit.h"
#include "StyledButton.h"
#include "Theme.h"
#include "storage/PaletteStorage.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr int sheetWidth = 350;
constexpr int padding = 24;

QLabel *groupLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setFont(Theme::font(11));
    Theme::setTextColor(label, Theme::secondaryText());
    return label;
}

} // namespace

AddColorSheet::AddColorSheet(PaletteStorage &paletteStorage, const QString &colorName,
                             std::optional<QUuid> selectedPaletteId, QWidget *parent)
    : QDialog(parent), m_paletteStorage(paletteStorage)
{
    setObjectName(QStringLiteral("addColorSheet"));
    setWindowTitle(tr("Add Color to Palette"));
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    Theme::applyDarkPalette(this);
    setFixedWidth(sheetWidth);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(padding, padding, padding, padding);
    layout->setSpacing(20);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    auto *title = new QLabel(tr("Add Color to Palette"), this);
    title->setObjectName(QStringLiteral("sheetTitle"));
    title->setFont(Theme::font(13, QFont::Bold));
    title->setAlignment(Qt::AlignHCenter);
    title->setFixedWidth(sheetWidth - 2 * padding);
    layout->addWidget(title);

    auto *nameGroup = new QVBoxLayout;
    nameGroup->setSpacing(6);
    nameGroup->addWidget(groupLabel(tr("Color Name"), this));
    m_nameField = new RoundedLineEdit(6, this);
    m_nameField->setObjectName(QStringLiteral("colorNameField"));
    m_nameField->setPlaceholderText(tr("Enter color name"));
    m_nameField->setAccessibleName(tr("Color Name"));
    m_nameField->setText(colorName);
    m_nameField->setCursorPosition(0);
    connect(m_nameField, &QLineEdit::textEdited, this, &AddColorSheet::colorNameEdited);
    nameGroup->addWidget(m_nameField);
    layout->addLayout(nameGroup);

    auto *paletteGroup = new QVBoxLayout;
    paletteGroup->setSpacing(6);
    paletteGroup->addWidget(groupLabel(tr("Select Palette"), this));
    m_paletteArea = new QWidget(this);
    auto *areaLayout = new QVBoxLayout(m_paletteArea);
    areaLayout->setContentsMargins(0, 0, 0, 0);
    paletteGroup->addWidget(m_paletteArea);
    layout->addLayout(paletteGroup);

    m_cancelButton = new StyledButton(StyledButton::Kind::Bordered, tr("Cancel"), this);
    m_cancelButton->setObjectName(QStringLiteral("sheetCancel"));
    m_addButton = new StyledButton(StyledButton::Kind::Prominent, tr("Add"), this);
    m_addButton->setObjectName(QStringLiteral("sheetAdd"));
    m_cancelButton->setMinimumWidth(80);
    m_addButton->setMinimumWidth(80);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(12);
    buttons->addStretch(1);
    buttons->addWidget(m_cancelButton);
    buttons->addWidget(m_addButton);
    buttons->addStretch(1);
    layout->addLayout(buttons);

    connect(m_cancelButton, &QAbstractButton::clicked, this, &QDialog::reject);
    connect(m_addButton, &QAbstractButton::clicked, this, &AddColorSheet::add);

    // On appearing: the caller's remembered palette, taken as it is, else
    // the first one.
    if (selectedPaletteId)
        m_selectedPalette = selectedPaletteId;
    else if (!m_paletteStorage.palettes().isEmpty())
        m_selectedPalette = m_paletteStorage.palettes().first().id;
    fillPaletteMenu();
    connect(&m_paletteStorage, &PaletteStorage::palettesChanged, this, &AddColorSheet::fillPaletteMenu);

    m_nameField->setFocus();
}

void AddColorSheet::fillPaletteMenu()
{
    QLayout *areaLayout = m_paletteArea->layout();
    const QList<Palette> &palettes = m_paletteStorage.palettes();
    if (palettes.isEmpty()) {
        delete m_paletteMenu;
        m_paletteMenu = nullptr;
        if (!m_noPalettesLabel) {
            m_noPalettesLabel = new QLabel(tr("No palettes available. Create one first."), m_paletteArea);
            m_noPalettesLabel->setObjectName(QStringLiteral("noPalettesAvailable"));
            QFont italic = Theme::font(11);
            italic.setItalic(true);
            m_noPalettesLabel->setFont(italic);
            Theme::setTextColor(m_noPalettesLabel, Theme::secondaryText());
            areaLayout->addWidget(m_noPalettesLabel);
        }
        return;
    }
    delete m_noPalettesLabel;
    m_noPalettesLabel = nullptr;
    if (!m_paletteMenu) {
        m_paletteMenu = new PaletteMenu(m_paletteArea);
        m_paletteMenu->setObjectName(QStringLiteral("paletteMenu"));
        m_paletteMenu->setAccessibleName(tr("Palette"));
        m_paletteMenu->setToolTip(tr("Palette"));
        m_paletteMenu->view()->setTextElideMode(Qt::ElideRight);
        areaLayout->addWidget(m_paletteMenu);
        // Made after the buttons: keep Tab in reading order.
        setTabOrder(m_nameField, m_paletteMenu);
        setTabOrder(m_paletteMenu, m_cancelButton);
        connect(m_paletteMenu, &QComboBox::activated, this, [this](int index) {
            const QVariant data = m_paletteMenu->itemData(index);
            m_selectedPalette = data.isValid() ? std::optional<QUuid>(data.toUuid()) : std::nullopt;
        });
    }

    QSignalBlocker block(m_paletteMenu);
    m_paletteMenu->clear();
    const QFontMetrics fm(m_paletteMenu->font());
    // Long names are cut to the sheet's width; the full name is the tooltip.
    const int textWidth = sheetWidth - 2 * padding - 48;
    m_paletteMenu->addItem(tr("Select a palette"));
    for (const Palette &palette : palettes) {
        const QString name = ElidedLabel::singleLine(palette.name);
        m_paletteMenu->addItem(fm.elidedText(name, Qt::ElideRight, textWidth), palette.id);
        m_paletteMenu->setItemData(m_paletteMenu->count() - 1, palette.name, Qt::ToolTipRole);
    }
    const int index = m_selectedPalette ? m_paletteMenu->findData(*m_selectedPalette) : 0;
    m_paletteMenu->setCurrentIndex(qMax(0, index));
}

QString AddColorSheet::colorName() const
{
    return m_nameField->text();
}

void AddColorSheet::setSelectedPalette(std::optional<QUuid> id)
{
    m_selectedPalette = id;
    if (m_paletteMenu) {
        const int index = id ? m_paletteMenu->findData(*id) : 0;
        m_paletteMenu->setCurrentIndex(qMax(0, index));
    }
}

void AddColorSheet::add()
{
    if (!m_selectedPalette || m_finished)
        return;
    m_finished = true;
    const QUuid id = *m_selectedPalette;
    emit addRequested(id, m_nameField->text());
    emit paletteChosen(id);
    accept();
}

void AddColorSheet::keyPressEvent(QKeyEvent *event)
{
    // Return is "Add" wherever it is pressed but on a focused button, which
    // has taken it already. Escape stays QDialog's reject ("Cancel").
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        add();
        return;
    }
    QDialog::keyPressEvent(event);
}

void AddColorSheet::showEvent(QShowEvent *event)
{
    adjustSize();
    Theme::placeOverParent(this);
    QDialog::showEvent(event);
}

void AddColorSheet::paintEvent(QPaintEvent *)
{
    Theme::paintSheetBackground(this);
}
