#include "ContrastTab.h"

#include "RoundedSwatch.h"
#include "Theme.h"
#include "model/ColorFormats.h"
#include "model/Contrast.h"
#include "storage/ContrastStorage.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
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
    layout->addStretch(1);

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
}
