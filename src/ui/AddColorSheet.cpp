#include "AddColorSheet.h"

#include "ElidedLabel.h"
#include "Theme.h"
#include "storage/PaletteStorage.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int sheetWidth = 350;
constexpr int padding = 24;

QLabel *groupLabel(const QString &text, QWidget *parent)
{
    return Theme::makeLabel(text, Theme::font(11), Theme::secondaryText(), parent);
}

} // namespace

AddColorSheet::AddColorSheet(PaletteStorage &paletteStorage, const QString &colorName,
                             std::optional<QUuid> selectedPaletteId, QWidget *parent)
    : QDialog(parent)
    , m_paletteStorage(paletteStorage)
{
    setObjectName(QStringLiteral("addColorSheet"));
    setWindowTitle(tr("Add Color to Palette"));
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    setFixedWidth(sheetWidth);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(padding, padding, padding, padding);
    layout->setSpacing(20);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    QLabel *title = Theme::makeLabel(tr("Add Color to Palette"), Theme::font(13, QFont::Bold),
                                     Theme::primaryText(), this);
    title->setAlignment(Qt::AlignHCenter);
    title->setFixedWidth(sheetWidth - 2 * padding);
    layout->addWidget(title);

    auto *nameGroup = new QVBoxLayout;
    nameGroup->setSpacing(6);
    nameGroup->addWidget(groupLabel(tr("Color Name"), this));
    m_nameField = Theme::makeField(6, this);
    m_nameField->setPlaceholderText(tr("Enter color name"));
    m_nameField->setAccessibleName(tr("Color Name"));
    m_nameField->setText(colorName);
    m_nameField->setCursorPosition(0);
    nameGroup->addWidget(m_nameField);
    layout->addLayout(nameGroup);

    // One of the two shows, as the store has palettes or not.
    auto *paletteGroup = new QVBoxLayout;
    paletteGroup->setSpacing(6);
    paletteGroup->addWidget(groupLabel(tr("Select Palette"), this));
    m_paletteMenu = new QComboBox(this);
    m_paletteMenu->setFont(Theme::font(13));
    m_paletteMenu->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_paletteMenu->view()->setTextElideMode(Qt::ElideRight);
    m_paletteMenu->setAccessibleName(tr("Palette"));
    m_paletteMenu->setToolTip(tr("Palette"));
    paletteGroup->addWidget(m_paletteMenu);
    m_noPalettesLabel = groupLabel(tr("No palettes available. Create one first."), this);
    QFont italic = m_noPalettesLabel->font();
    italic.setItalic(true);
    m_noPalettesLabel->setFont(italic);
    paletteGroup->addWidget(m_noPalettesLabel);
    layout->addLayout(paletteGroup);

    m_cancelButton = Theme::makeButton(Theme::ButtonKind::Bordered, tr("Cancel"), this);
    m_addButton = Theme::makeButton(Theme::ButtonKind::Prominent, tr("Add"), this);
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
    connect(m_paletteMenu, &QComboBox::activated, this, [this](int index) {
        const QVariant data = m_paletteMenu->itemData(index);
        m_selectedPalette = data.isValid() ? std::optional<QUuid>(data.toUuid()) : std::nullopt;
    });

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
    const QList<Palette> &palettes = m_paletteStorage.palettes();
    m_paletteMenu->setVisible(!palettes.isEmpty());
    m_noPalettesLabel->setVisible(palettes.isEmpty());

    QSignalBlocker block(m_paletteMenu);
    m_paletteMenu->clear();
    // Long names are cut to the sheet's width; the full name is the tooltip.
    const int textWidth = sheetWidth - 2 * padding - 48;
    m_paletteMenu->addItem(tr("Select a palette"));
    for (const Palette &palette : palettes) {
        const QString name = ElidedLabel::singleLine(palette.name);
        m_paletteMenu->addItem(m_paletteMenu->fontMetrics().elidedText(name, Qt::ElideRight, textWidth),
                               palette.id);
        m_paletteMenu->setItemData(m_paletteMenu->count() - 1, palette.name, Qt::ToolTipRole);
    }
    setSelectedPalette(m_selectedPalette);
}

void AddColorSheet::setSelectedPalette(std::optional<QUuid> id)
{
    m_selectedPalette = id;
    m_paletteMenu->setCurrentIndex(qMax(0, id ? m_paletteMenu->findData(*id) : 0));
}

void AddColorSheet::add()
{
    // Nothing is chosen with no palettes or on "Select a palette".
    if (!m_selectedPalette || m_finished)
        return;
    m_finished = true;
    emit addRequested(*m_selectedPalette, m_nameField->text());
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
