#include "TabButton.h"

#include "Icons.h"
#include "Theme.h"

#include <QKeyEvent>
#include <QFocusEvent>
#include <QPainter>

namespace {
// The symbol at the 12-point text size reads as about 14 pixels.
constexpr int symbolSize = 14;
constexpr int verticalPadding = 6;
constexpr qreal cornerRadius = 6;
} // namespace

TabButton::TabButton(MenuTab tab, QWidget *parent)
    : QAbstractButton(parent), m_tab(tab)
{
    const QString title = MenuTabs::title(tab);
    setObjectName(QStringLiteral("tab%1").arg(title));
    setAccessibleName(title);
    setToolTip(title);
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void TabButton::setSelected(bool selected)
{
    setChecked(selected);
    update();
}

QSize TabButton::sizeHint() const
{
    return QSize(symbolSize + 2 * verticalPadding, symbolSize + 2 * verticalPadding);
}

QSize TabButton::minimumSizeHint() const
{
    return sizeHint();
}

void TabButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QColor fill = Qt::transparent;
    if (isSelected())
        fill = QColor(255, 255, 255, 26); // primary at 0.1
    else if (m_hovered || isDown())
        fill = QColor(255, 255, 255, 10);
    painter.setPen(m_focusRing ? QPen(Theme::accent(), 1.5) : Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(box, cornerRadius, cornerRadius);

    const QColor color = isSelected() ? Theme::primaryText() : Theme::secondaryText();
    const QPixmap pm = Icons::pixmap(MenuTabs::icon(m_tab), color, symbolSize, devicePixelRatioF());
    painter.drawPixmap(QPointF((width() - symbolSize) / 2.0, (height() - symbolSize) / 2.0), pm);
}

void TabButton::keyPressEvent(QKeyEvent *event)
{
    if (!event->isAutoRepeat() && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void TabButton::enterEvent(QEnterEvent *event)
{
    m_hovered = true;
    update();
    QAbstractButton::enterEvent(event);
}

void TabButton::leaveEvent(QEvent *event)
{
    m_hovered = false;
    update();
    QAbstractButton::leaveEvent(event);
}

void TabButton::focusInEvent(QFocusEvent *event)
{
    m_focusRing = Theme::showsFocusRing(event->reason());
    update();
    QAbstractButton::focusInEvent(event);
}

void TabButton::focusOutEvent(QFocusEvent *event)
{
    m_focusRing = false;
    update();
    QAbstractButton::focusOutEvent(event);
}
