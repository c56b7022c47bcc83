#include "TabButton.h"

#include "Icons.h"

#include <QPainter>

namespace {
// The symbol at the 12-point text size reads as about 14 pixels.
constexpr int symbolSize = 14;
constexpr int verticalPadding = 6;
} // namespace

TabButton::TabButton(MenuTab tab, QWidget *parent)
    : DrawnControl(parent)
    , m_tab(tab)
{
    const QString title = MenuTabs::title(tab);
    setObjectName(QStringLiteral("tab%1").arg(title));
    setAccessibleName(title);
    setToolTip(QStringLiteral("%1 (Ctrl+%2)").arg(title).arg(int(tab) + 1));
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize TabButton::sizeHint() const
{
    return QSize(symbolSize + 2 * verticalPadding, symbolSize + 2 * verticalPadding);
}

void TabButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor fill = Qt::transparent;
    if (isChecked())
        fill = QColor(255, 255, 255, 26); // primary at 0.1
    else if (isHovered() || isDown())
        fill = QColor(255, 255, 255, 10);
    painter.setPen(showsFocusRing() ? QPen(Theme::accent(), 1.5) : Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);

    const QColor color = isChecked() ? Theme::primaryText() : Theme::secondaryText();
    painter.drawPixmap(QPointF((width() - symbolSize) / 2.0, (height() - symbolSize) / 2.0),
                       Icons::pixmap(MenuTabs::icon(m_tab), color, symbolSize, devicePixelRatioF()));
}
