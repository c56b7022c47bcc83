#include "ContrastTab.h"

#include "ContrastFixes.h"
#include "RoundedSwatch.h"
#include "Theme.h"
#include "VisionPreviews.h"
#include "model/Apca.h"
#include "model/ColorFormats.h"
#include "model/Contrast.h"
#include "model/ContrastReport.h"
#include "storage/ContrastStorage.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

QColor colorOrFallback(const QString &hex, const QColor &fallback)
{
    const std::optional<RgbColor> parsed = parseHex(hex);
    return parsed ? toQColor(*parsed) : fallback;
}

// The WCAG grade on a rounded fill of its own color.
class LevelBadge : public QLabel
{
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QPainter painter(this);
        const QColor color = palette().color(QPalette::WindowText);
        Theme::paintRoundedCard(painter, rect(), 6, Theme::withAlpha(color, 0.2), Qt::transparent, 0);
        painter.end();
        QLabel::paintEvent(event);
    }
};

// "Sample Text" in the foreground color on the background color.
class ContrastPreview : public QWidget
{
public:
    ContrastPreview(const ContrastStorage &storage, QWidget *parent)
        : QWidget(parent)
        , m_storage(storage)
    {
        setFixedHeight(50);
        setAccessibleName(QStringLiteral("Sample Text"));
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        Theme::paintRoundedCard(painter, rect(), 10, Theme::material(), Qt::transparent, 0);
        Theme::paintRoundedCard(painter, rect(), 10, colorOrFallback(m_storage.hex2(), Qt::white),
                                QColor(255, 255, 255, 77), 0.5);
        painter.setFont(Theme::font(15, QFont::DemiBold));
        painter.setPen(colorOrFallback(m_storage.hex1(), Qt::black));
        painter.drawText(rect(), Qt::AlignCenter, QStringLiteral("Sample Text"));
    }

private:
    const ContrastStorage &m_storage;
};

QVBoxLayout *resultBlock(const QString &caption, QLabel *value, QWidget *parent)
{
    auto *block = new QVBoxLayout;
    block->setSpacing(4);
    block->addWidget(
        Theme::makeLabel(caption, Theme::font(12, QFont::Medium), Theme::secondaryText(), parent), 0,
        Qt::AlignHCenter);
    block->addWidget(value, 0, Qt::AlignHCenter);
    return block;
}

} // namespace

ContrastTab::ContrastTab(ContrastStorage &contrastStorage, QWidget *parent)
    : QWidget(parent)
    , m_contrastStorage(contrastStorage)
    , m_preview(new ContrastPreview(contrastStorage, this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(16);
    layout->addWidget(m_preview);

    auto *inputs = new QHBoxLayout;
    inputs->setSpacing(12);
    m_backgroundField = addInput(inputs, QStringLiteral("Background"), m_backgroundSwatch);
    m_foregroundField = addInput(inputs, QStringLiteral("Foreground"), m_foregroundSwatch);
    layout->addLayout(inputs);

    m_ratioLabel =
        Theme::makeLabel(QString(), Theme::monospaceFont(18, QFont::Bold), Theme::primaryText(), this);
    m_ratioLabel->setAccessibleDescription(QStringLiteral("Contrast ratio"));
    m_levelBadge = new LevelBadge(this);
    m_levelBadge->setFont(Theme::font(14, QFont::DemiBold));
    m_levelBadge->setContentsMargins(12, 4, 13, 4);
    m_levelBadge->setAccessibleDescription(QStringLiteral("WCAG Level"));
    auto *result = new QHBoxLayout;
    result->setSpacing(32);
    result->addStretch(1);
    result->addLayout(resultBlock(QStringLiteral("Contrast"), m_ratioLabel, this));
    result->addLayout(resultBlock(QStringLiteral("WCAG Level"), m_levelBadge, this));
    result->addStretch(1);
    layout->addLayout(result);

    auto *apca = new QHBoxLayout;
    apca->setSpacing(6);
    QLabel *apcaCaption = Theme::makeLabel(QStringLiteral("APCA"), Theme::font(11, QFont::Medium),
                                           Theme::secondaryText(), this);
    m_apcaLabel =
        Theme::makeLabel(QString(), Theme::monospaceFont(12, QFont::Bold), Theme::primaryText(), this);
    m_apcaLabel->setAccessibleDescription(QStringLiteral("APCA contrast"));
    m_apcaUse = Theme::makeLabel(QString(), Theme::font(11), Theme::secondaryText(), this);
    m_apcaUse->setAccessibleDescription(QStringLiteral("APCA use"));
    m_visionButton = Theme::makeButton(Theme::ButtonKind::Bordered, tr("Vision"), this);
    m_visionButton->setFont(Theme::font(11));
    m_visionButton->setProperty("verticalPadding", 2);
    m_visionButton->setCheckable(true);
    m_visionButton->setAccessibleName(tr("Color vision"));
    m_visionButton->setToolTip(tr("The pair as seen with color-vision deficiencies (Alt+V)"));
    // The drawn buttons show no mnemonic underline; the key works all the same.
    auto *visionKey = new QShortcut(QKeySequence(Qt::ALT | Qt::Key_V), this);
    connect(visionKey, &QShortcut::activated, m_visionButton, &QPushButton::toggle);
    apca->addWidget(apcaCaption);
    apca->addWidget(m_apcaLabel);
    apca->addWidget(m_apcaUse, 1);
    apca->addWidget(m_visionButton);
    layout->addSpacing(-6); // the two lines below belong with the grade above
    layout->addLayout(apca);

    m_more = new QStackedWidget(this);
    m_fixes = new ContrastFixes(m_more);
    m_vision = new VisionPreviews(m_more);
    m_more->addWidget(m_fixes);
    m_more->addWidget(m_vision);
    layout->addSpacing(-8);
    layout->addWidget(m_more);
    layout->addStretch(1);
    connect(m_visionButton, &QPushButton::toggled, this, [this](bool on) {
        m_more->setCurrentWidget(on ? static_cast<QWidget *>(m_vision) : m_fixes);
        m_visionButton->setProperty("textColor", on ? Theme::accent() : QColor());
        m_visionButton->update();
    });
    // A fix goes into its field as if typed there.
    connect(m_fixes, &ContrastFixes::foregroundChosen, this, [this](const QString &hex) {
        m_contrastStorage.setHex1(hex);
        m_foregroundField->setFocus(Qt::OtherFocusReason);
    });
    connect(m_fixes, &ContrastFixes::backgroundChosen, this, [this](const QString &hex) {
        m_contrastStorage.setHex2(hex);
        m_backgroundField->setFocus(Qt::OtherFocusReason);
    });

    m_backgroundField->setText(contrastStorage.hex2());
    m_foregroundField->setText(contrastStorage.hex1());
    connect(m_backgroundField, &QLineEdit::textEdited, &contrastStorage, &ContrastStorage::setHex2);
    connect(m_foregroundField, &QLineEdit::textEdited, &contrastStorage, &ContrastStorage::setHex1);
    connect(&contrastStorage, &ContrastStorage::hex1Changed, this, &ContrastTab::refresh);
    connect(&contrastStorage, &ContrastStorage::hex2Changed, this, &ContrastTab::refresh);
    refresh();
}

// One color: its swatch (on a faint dark underlay, so that a light or dark
// color stays visible on the window), its caption and its hex field.
QLineEdit *ContrastTab::addInput(QHBoxLayout *row, const QString &label, RoundedSwatch *&swatch)
{
    swatch = new RoundedSwatch(8, this);
    swatch->setFixedHeight(60);
    swatch->setUnderlay(QColor(0, 0, 0, 26));
    swatch->setAccessibleName(label + tr(" color"));
    QLabel *caption = Theme::makeLabel(label, Theme::font(12), Theme::secondaryText(), this);
    QLineEdit *field = Theme::makeField(8, this);
    field->setFont(Theme::monospaceFont(13));
    field->setPlaceholderText(QStringLiteral("#RRGGBB"));
    field->setAccessibleName(label);
    caption->setBuddy(field);
    auto *column = new QVBoxLayout;
    column->setSpacing(6);
    column->addWidget(swatch);
    column->addWidget(caption);
    column->addWidget(field);
    row->addLayout(column, 1);
    return field;
}

QString ContrastTab::ratioText() const
{
    return m_ratioLabel->text();
}

QString ContrastTab::levelText() const
{
    return m_levelBadge->text();
}

QString ContrastTab::apcaText() const
{
    return m_apcaLabel->text();
}

void ContrastTab::refresh()
{
    // A text stored elsewhere is shown; the caret stays put when it is the
    // one already shown.
    const std::pair<QLineEdit *, QString> texts[] = {{m_backgroundField, m_contrastStorage.hex2()},
                                                     {m_foregroundField, m_contrastStorage.hex1()}};
    for (const auto &[field, text] : texts)
        if (field->text() != text)
            field->setText(text);
    const QColor background = colorOrFallback(m_contrastStorage.hex2(), Qt::white);
    const QColor foreground = colorOrFallback(m_contrastStorage.hex1(), Qt::black);
    m_backgroundSwatch->setColor(background);
    m_backgroundSwatch->setAccessibleDescription(
        hexString(background.redF(), background.greenF(), background.blueF()));
    m_foregroundSwatch->setColor(foreground);
    m_foregroundSwatch->setAccessibleDescription(
        hexString(foreground.redF(), foreground.greenF(), foreground.blueF()));
    m_preview->update();

    const double ratio = m_contrastStorage.contrastRatio();
    m_ratioLabel->setText(contrastRatioText(ratio));
    const WcagLevel level = wcagLevel(ratio);
    const QColor levelColor = wcagColor(level);
    m_levelBadge->setText(wcagLabel(level));
    QPalette badge = m_levelBadge->palette();
    badge.setColor(QPalette::WindowText, levelColor);
    m_levelBadge->setPalette(badge);

    const auto rgbOf = [](const QColor &color) {
        return RgbColor{color.redF(), color.greenF(), color.blueF()};
    };
    const ContrastReport report = ContrastReport::of(rgbOf(foreground), rgbOf(background));
    m_apcaLabel->setText(Apca::text(report.apca));
    m_apcaUse->setText(Apca::use(report.apca));
    m_fixes->setReport(report);
    m_vision->setReport(report);
}
