#include "ContrastFixes.h"

#include "Theme.h"

#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace {

// A bordered button whose text follows a small sample of the pair the
// color makes: "A" in the text color on the background.
class FixButton : public QPushButton
{
public:
    FixButton(const QString &hex, const QColor &text, const QColor &background, QWidget *parent)
        : QPushButton(hex, parent)
        , m_text(text)
        , m_background(background)
    {
        setProperty("kind", QStringLiteral("bordered"));
        setProperty("verticalPadding", 2);
        setFont(Theme::font(11));
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        // The style draws the button with the sample's room left empty.
        QStylePainter painter(this);
        QStyleOptionButton option;
        initStyleOption(&option);
        const int side = isEnabled() ? 14 : 0, gap = isEnabled() ? 5 : 0;
        const int textWidth = fontMetrics().horizontalAdvance(option.text);
        option.text = QString(); // drawn below, after the sample
        painter.drawControl(QStyle::CE_PushButton, option);
        const int left = (width() - side - gap - textWidth) / 2;
        const QRectF sample(left, (height() - side) / 2.0, side, side);
        painter.setRenderHint(QPainter::Antialiasing);
        if (isEnabled())
            Theme::paintRoundedCard(painter, sample, 3, m_background, QColor(255, 255, 255, 77), 0.5);
        painter.setFont(Theme::font(10, QFont::DemiBold));
        painter.setPen(m_text);
        if (isEnabled())
            painter.drawText(sample, Qt::AlignCenter, QStringLiteral("A"));
        painter.setFont(font());
        painter.setPen(isEnabled() ? Theme::primaryText() : Theme::secondaryText());
        painter.drawText(QRectF(sample.right() + gap, 0, width(), height()), Qt::AlignLeft | Qt::AlignVCenter,
                         text());
    }

private:
    QColor m_text;
    QColor m_background;
};

QColor colorOf(const QString &hex)
{
    return QColor::fromString(hex);
}

} // namespace

ContrastFixes::ContrastFixes(QWidget *parent)
    : QWidget(parent)
    , m_rows(new QGridLayout(this))
{
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setHorizontalSpacing(6);
    m_rows->setVerticalSpacing(4);
    m_rows->setColumnMinimumWidth(0, 30);
    m_rows->setColumnStretch(1, 1);
    m_rows->setColumnStretch(2, 1);
}

void ContrastFixes::setReport(const ContrastReport &report)
{
    // Rebuilt whole (at most two rows); later, as a click on one of them
    // is what changed the pair.
    while (QLayoutItem *item = m_rows->takeAt(0)) {
        if (QWidget *widget = item->widget()) {
            widget->hide();
            widget->deleteLater();
        }
        delete item;
    }
    if (report.fixes.isEmpty()) {
        m_rows->addWidget(
            Theme::makeLabel(tr("Passes AA and AAA."), Theme::font(11), Theme::secondaryText(), this), 0, 0,
            1, 3);
        return;
    }
    const QColor text = colorOf(report.foreground), background = colorOf(report.background);
    int row = 0;
    for (const ContrastReport::Fixes &fixes : report.fixes) {
        QLabel *level =
            Theme::makeLabel(fixes.level, Theme::font(11, QFont::DemiBold), Theme::secondaryText(), this);
        m_rows->addWidget(level, row, 0);
        const auto add = [&](const std::optional<PassingColor> &fix, bool foreground) {
            const QString role = foreground ? tr("Text color") : tr("Background");
            auto *button = fix
                ? new FixButton(QStringLiteral("%1 %2").arg(fix->hex, contrastRatioText(fix->ratio)),
                                foreground ? colorOf(fix->hex) : text,
                                foreground ? background : colorOf(fix->hex), this)
                : new FixButton(tr("Out of reach"), text, background, this);
            button->setEnabled(fix.has_value());
            const QString name = fix
                ? tr("%1 %2 for %3, ratio %4").arg(role, fix->hex, fixes.level, contrastRatioText(fix->ratio))
                : tr("No %1 reaches %2").arg(role.toLower(), fixes.level);
            button->setAccessibleName(name);
            button->setToolTip(name);
            if (fix) {
                const QString hex = fix->hex;
                connect(button, &QPushButton::clicked, this, [this, hex, foreground] {
                    emit(foreground ? foregroundChosen(hex) : backgroundChosen(hex));
                });
            }
            m_rows->addWidget(button, row, foreground ? 1 : 2);
        };
        add(fixes.foreground, true);
        add(fixes.background, false);
        ++row;
    }
}
