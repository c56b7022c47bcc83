#include "ContrastView.h"

#include "ContrastInputRow.h"
#include "Theme.h"
#include "model/ColorFormats.h"
#include "model/Contrast.h"
#include "storage/ContrastStorage.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace {

QColor colorOrFallback(const QString &hex, const QColor &fallback)
{
    const std::optional<RgbColor> parsed = parseHex(hex);
    if (!parsed)
        return fallback;
    return QColor::fromRgbF(float(parsed->red), float(parsed->green), float(parsed->blue));
}

QLabel *makeCaption(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setFont(Theme::font(12, QFont::Medium));
    QPalette p = label->palette();
    p.setColor(QPalette::WindowText, Theme::secondaryText());
    label->setPalette(p);
    return label;
}

QString rgba(const QColor &c)
{
    return QStringLiteral("rgba(%1, %2, %3, %4)")
        .arg(c.red())
        .arg(c.green())
        .arg(c.blue())
        .arg(QString::number(c.alphaF(), 'f', 3));
}

} // namespace

// "Sample Text" in the foreground color on the background color.
class ContrastPreview : public QWidget
{
public:
    explicit ContrastPreview(QWidget *parent)
        : QWidget(parent)
    {
        setFixedHeight(50);
        setAccessibleName(QStringLiteral("Sample Text"));
    }

    void setColors(const QColor &foreground, const QColor &background)
    {
        m_foreground = foreground;
        m_background = background;
        update();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        Theme::paintRoundedCard(painter, rect(), 10, Theme::material(), Qt::transparent, 0);
        Theme::paintRoundedCard(painter, rect(), 10, m_background, QColor(255, 255, 255, 77), 0.5);
        painter.setFont(Theme::font(15, QFont::DemiBold));
        painter.setPen(m_foreground);
        painter.drawText(rect(), Qt::AlignCenter, QStringLiteral("Sample Text"));
    }

private:
    QColor m_foreground = Qt::black;
    QColor m_background = Qt::white;
};

ContrastView::ContrastView(ContrastStorage &contrastStorage, QWidget *parent)
    : QWidget(parent)
    , m_contrastStorage(contrastStorage)
    , m_preview(new ContrastPreview(this))
    // The background row leads on purpose, though hex1 is the text color.
    , m_backgroundRow(new ContrastInputRow(QStringLiteral("Background"), Qt::white, this))
    , m_foregroundRow(new ContrastInputRow(QStringLiteral("Foreground"), Qt::black, this))
    , m_ratioLabel(new QLabel(this))
    , m_levelBadge(new QLabel(this))
{
    m_backgroundRow->setValue(m_contrastStorage.hex2());
    m_foregroundRow->setValue(m_contrastStorage.hex1());

    m_ratioLabel->setObjectName(QStringLiteral("contrastRatio"));
    m_ratioLabel->setFont(Theme::monospaceFont(18, QFont::Bold));
    QPalette p = m_ratioLabel->palette();
    p.setColor(QPalette::WindowText, Theme::primaryText());
    m_ratioLabel->setPalette(p);
    m_ratioLabel->setAccessibleDescription(QStringLiteral("Contrast ratio"));

    m_levelBadge->setObjectName(QStringLiteral("wcagLevel"));
    m_levelBadge->setFont(Theme::font(14, QFont::DemiBold));
    m_levelBadge->setAccessibleDescription(QStringLiteral("WCAG Level"));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(16);
    layout->addWidget(m_preview);

    auto *rows = new QHBoxLayout;
    rows->setSpacing(12);
    rows->addWidget(m_backgroundRow, 1);
    rows->addWidget(m_foregroundRow, 1);
    layout->addLayout(rows);

    auto *contrastBlock = new QVBoxLayout;
    contrastBlock->setSpacing(4);
    contrastBlock->addWidget(makeCaption(QStringLiteral("Contrast"), this), 0, Qt::AlignHCenter);
    contrastBlock->addWidget(m_ratioLabel, 0, Qt::AlignHCenter);

    auto *levelBlock = new QVBoxLayout;
    levelBlock->setSpacing(4);
    levelBlock->addWidget(makeCaption(QStringLiteral("WCAG Level"), this), 0, Qt::AlignHCenter);
    levelBlock->addWidget(m_levelBadge, 0, Qt::AlignHCenter);

    auto *result = new QHBoxLayout;
    result->setSpacing(32);
    result->addStretch(1);
    result->addLayout(contrastBlock);
    result->addLayout(levelBlock);
    result->addStretch(1);
    layout->addLayout(result);
    layout->addStretch(1);

    // Every keystroke goes to the store at once; the view follows the store.
    connect(m_backgroundRow, &ContrastInputRow::valueEdited, &m_contrastStorage, &ContrastStorage::setHex2);
    connect(m_foregroundRow, &ContrastInputRow::valueEdited, &m_contrastStorage, &ContrastStorage::setHex1);
    connect(&m_contrastStorage, &ContrastStorage::hex2Changed, this, [this](const QString &text) {
        m_backgroundRow->setValue(text);
        refresh();
    });
    connect(&m_contrastStorage, &ContrastStorage::hex1Changed, this, [this](const QString &text) {
        m_foregroundRow->setValue(text);
        refresh();
    });
    refresh();
}

QString ContrastView::ratioText() const
{
    return m_ratioLabel->text();
}

QString ContrastView::levelText() const
{
    return m_levelBadge->text();
}

void ContrastView::refresh()
{
    m_preview->setColors(colorOrFallback(m_contrastStorage.hex1(), Qt::black),
                         colorOrFallback(m_contrastStorage.hex2(), Qt::white));

    const double ratio = m_contrastStorage.contrastRatio();
    m_ratioLabel->setText(contrastRatioText(ratio));

    const WcagLevel level = wcagLevel(ratio);
    const QColor levelColor = wcagColor(level);
    m_levelBadge->setText(wcagLabel(level));
    m_levelBadge->setStyleSheet(QStringLiteral("QLabel { color: %1; background-color: %2; "
                                               "border-radius: 6px; padding: 4px 8px; }")
                                    .arg(rgba(levelColor), rgba(Theme::withAlpha(levelColor, 0.2))));
}
