#include "PickerTab.h"

#include "AddToPaletteFlow.h"
#include "ColorDisplayView.h"
#include "Icons.h"
#include "TextPromptDialog.h"
#include "Theme.h"
#include "model/ColorFormats.h"
#include "picking/TintwrightService.h"
#include "storage/PaletteStorage.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// The large preview: the picked color on a rounded card or, with no color,
// a placeholder card with the eyedropper over "Pick a color".
class PickedColorPreview : public QWidget
{
public:
    PickedColorPreview(const TintwrightService &service, QWidget *parent)
        : QWidget(parent)
        , m_service(service)
    {
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        setMinimumSize(40, 40);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        constexpr qreal radius = 12;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (const std::optional<ColorItem> picked = m_service.pickedColor()) {
            Theme::paintRoundedCard(painter, rect(), radius, toQColor(picked->rgb(), picked->alpha),
                                    QColor(255, 255, 255, 77), 0.5);
            return;
        }
        // Material card, a faint tint, a hairline, then the symbol above the caption.
        Theme::paintRoundedCard(painter, rect(), radius, Theme::withAlpha(Theme::material(), 0.5),
                                Qt::transparent, 0);
        QLinearGradient tint(rect().topLeft(), rect().bottomRight());
        tint.setColorAt(0, QColor::fromRgbF(0.5f, 0.5f, 0.9f, 0.08f));
        tint.setColorAt(1, QColor::fromRgbF(0.6f, 0.4f, 0.8f, 0.05f));
        painter.setPen(Qt::NoPen);
        painter.setBrush(tint);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.25, 0.25, -0.25, -0.25), radius, radius);
        Theme::paintRoundedCard(painter, rect(), radius, Qt::transparent, QColor(255, 255, 255, 38), 0.5);

        const QFontMetrics fm(Theme::font(12));
        const int symbolSize = 24;
        const int top = (height() - symbolSize - 8 - fm.height()) / 2;
        painter.drawPixmap(QPointF((width() - symbolSize) / 2.0, top),
                           Icons::pixmap(QStringLiteral("eyedropper"), Theme::secondaryText(), symbolSize,
                                         devicePixelRatioF()));
        painter.setFont(Theme::font(12));
        painter.setPen(Theme::primaryText());
        painter.drawText(QRect(0, top + symbolSize + 8, width(), fm.height()), Qt::AlignCenter,
                         tr("Pick a color"));
    }

private:
    const TintwrightService &m_service;
};

} // namespace

PickerTab::PickerTab(TintwrightService &tintwrightService, PaletteStorage &paletteStorage, QWidget *parent)
    : QWidget(parent)
    , m_tintwrightService(tintwrightService)
    , m_paletteStorage(paletteStorage)
    , m_addToPalette(new AddToPaletteFlow(paletteStorage, this))
    , m_preview(new PickedColorPreview(tintwrightService, this))
    , m_pickButton(Theme::makeButton(Theme::ButtonKind::Prominent, tr("Pick Color"), this,
                                     QStringLiteral("eyedropper")))
    , m_pickUnavailable(Theme::makeLabel(tr("Picking needs the desktop's screenshot portal"), Theme::font(11),
                                         Theme::secondaryText(), this))
    , m_colorDisplay(new ColorDisplayView(this))
    , m_noPalettesRow(new QWidget(this))
    , m_addToPaletteButton(
          Theme::makeButton(Theme::ButtonKind::Bordered, tr("Add to Palette"), this, QStringLiteral("plus")))
{
    m_pickButton->setProperty("verticalPadding", 10);
    m_addToPaletteButton->setProperty("verticalPadding", 8);

    QPushButton *createOne = Theme::makeButton(Theme::ButtonKind::Link, tr("Create one"), m_noPalettesRow);
    createOne->setFont(Theme::font(12));
    auto *noPalettes = new QHBoxLayout(m_noPalettesRow);
    noPalettes->setContentsMargins(0, 0, 0, 0);
    noPalettes->setSpacing(4);
    noPalettes->addStretch(1);
    noPalettes->addWidget(
        Theme::makeLabel(tr("No palettes yet."), Theme::font(12), Theme::secondaryText(), m_noPalettesRow));
    noPalettes->addWidget(createOne);
    noPalettes->addStretch(1);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(12);
    layout->addWidget(m_preview, 1);
    layout->addWidget(m_pickButton);
    // Said where nothing can read the screen (Wayland without the portal),
    // until the next pick.
    m_pickUnavailable->setAlignment(Qt::AlignCenter);
    m_pickUnavailable->setWordWrap(true);
    layout->addWidget(m_pickUnavailable);
    layout->addWidget(m_colorDisplay);
    layout->addWidget(m_noPalettesRow);
    layout->addWidget(m_addToPaletteButton);

    connect(m_pickButton, &QAbstractButton::clicked, this, &PickerTab::pickColor);
    connect(createOne, &QAbstractButton::clicked, this, &PickerTab::showNewPalettePrompt);
    connect(m_addToPaletteButton, &QAbstractButton::clicked, this, &PickerTab::showAddSheet);
    connect(&m_tintwrightService, &TintwrightService::pickedColorChanged, this, &PickerTab::showPickedColor);
    connect(&m_tintwrightService, &TintwrightService::isPickingChanged, this, &PickerTab::refresh);
    connect(&m_tintwrightService, &TintwrightService::pickFinished, this, [this](const PickResult &result) {
        m_unavailableReason = result.reason;
        refresh();
    });
    connect(&m_paletteStorage, &PaletteStorage::palettesChanged, this, &PickerTab::refresh);
    showPickedColor();
}

void PickerTab::showPickedColor()
{
    const std::optional<ColorItem> picked = m_tintwrightService.pickedColor();
    m_preview->setAccessibleName(
        picked ? tr("Picked color %1").arg(hexString(picked->red, picked->green, picked->blue))
               : tr("Pick a color"));
    m_preview->update();
    if (picked)
        m_colorDisplay->setColorItem(*picked);
    refresh();
}

void PickerTab::refresh()
{
    const bool picked = m_tintwrightService.pickedColor().has_value();
    const bool noPalettes = m_paletteStorage.palettes().isEmpty();
    m_pickButton->setEnabled(!m_tintwrightService.isPicking());
    m_colorDisplay->setVisible(picked);
    m_pickUnavailable->setToolTip(m_unavailableReason);
    m_pickUnavailable->setVisible(!m_unavailableReason.isEmpty() && !m_tintwrightService.isPicking());
    m_noPalettesRow->setVisible(picked && noPalettes);
    m_addToPaletteButton->setVisible(picked && !noPalettes);
}

void PickerTab::pickColor()
{
    if (!m_tintwrightService.isPicking())
        m_tintwrightService.pickColor();
}

void PickerTab::showAddSheet()
{
    const std::optional<ColorItem> picked = m_tintwrightService.pickedColor();
    TintwrightService &service = m_tintwrightService;
    m_addToPalette->open([&service] { return service.pickedColor(); },
                         picked ? picked->name : tr("Untitled"));
}

void PickerTab::showNewPalettePrompt()
{
    if (m_prompt)
        m_prompt->close();
    m_prompt = TextPromptDialog::newPalettePrompt(tr("Enter a name for the new palette."), this);
    connect(m_prompt, &TextPromptDialog::textAccepted, this, &PickerTab::createPalette);
    m_prompt->open();
}

void PickerTab::createPalette(const QString &name)
{
    // An empty name makes nothing; blanks are a name like any other.
    if (name.isEmpty())
        return;
    m_addToPalette->rememberPalette(m_paletteStorage.createPalette(name).id);
    // Straight on to filing the color in the palette just made.
    showAddSheet();
}

TextPromptDialog *PickerTab::newPalettePrompt() const
{
    return m_prompt;
}
