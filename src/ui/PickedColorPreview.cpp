#include "PickedColorPreview.h"

#include "Icons.h"
#include "Theme.h"
#include "model/ColorFormats.h"

#include <QLinearGradient>
#include <QPainter>

namespace {
constexpr qreal cornerRadius = 12;
}

PickedColorPreview::PickedColorPreview(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("preview"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAccessibleName(tr("Pick a color"));
}

void PickedColorPreview::setColorItem(const std::optional<ColorItem> &colorItem)
{
    m_colorItem = colorItem;
    setAccessibleName(colorItem ? tr("Picked color %1").arg(hexString(colorItem->red, colorItem->green,
                                                                       colorItem->blue))
                                : tr("Pick a color"));
    update();
}

QSize PickedColorPreview::minimumSizeHint() const
{
    return QSize(40, 40);
}

void PickedColorPreview::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_colorItem) {
        const QColor color = QColor::fromRgbF(float(qBound(0.0, m_colorItem->red, 1.0)),
                                              float(qBound(0.0, m_colorItem->green, 1.0)),
                                              float(qBound(0.0, m_colorItem->blue, 1.0)),
                                              float(qBound(0.0, m_colorItem->alpha, 1.0)));
        Theme::paintRoundedCard(painter, rect(), cornerRadius, color, QColor(255, 255, 255, 77), 0.5);
        return;
    }

    // Placeholder: material card, a faint tint, a hairline, then the symbol
    // above the caption.
    Theme::paintRoundedCard(painter, rect(), cornerRadius, Theme::withAlpha(Theme::material(), 0.5),
                            Qt::transparent, 0);
    QLinearGradient tint(rect().topLeft(), rect().bottomRight());
    tint.setColorAt(0, QColor::fromRgbF(0.5f, 0.5f, 0.9f, 0.08f));
    tint.setColorAt(1, QColor::fromRgbF(0.6f, 0.4f, 0.8f, 0.05f));
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(tint);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.25, 0.25, -0.25, -0.25), cornerRadius, cornerRadius);
    painter.restore();
    Theme::paintRoundedCard(painter, rect(), cornerRadius, Qt::transparent, QColor(255, 255, 255, 38), 0.5);

    const QFont captionFont = Theme::font(12);
    const QFontMetrics fm(captionFont);
    const int symbolSize = 24;
    const int gap = 8;
    const int total = symbolSize + gap + fm.height();
    const int top = (height() - total) / 2;
    painter.drawPixmap(QPointF((width() - symbolSize) / 2.0, top),
                       Icons::pixmap(QStringLiteral("eyedropper"), Theme::secondaryText(), symbolSize,
                                     devicePixelRatioF()));
    painter.setFont(captionFont);
    painter.setPen(Theme::primaryText());
    painter.drawText(QRect(0, top + symbolSize + gap, width(), fm.height()), Qt::AlignCenter,
                     tr("Pick a color"));
}
