#include "IconButton.h"

#include "Icons.h"
#include "Theme.h"

#include <QKeyEvent>
#include <QFocusEvent>
#include <QPainter>

IconButton::IconButton(const QString &symbolName, const QString &name, QWidget *parent)
    : QAbstractButton(parent),
      m_symbol(symbolName),
      m_color(Theme::secondaryText()),
      m_hoverColor(Theme::primaryText())
{
    setToolTip(name);
    setAccessibleName(name);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setFixedSize(m_buttonSize, m_buttonSize);
}

void IconButton::setSymbol(const QString &symbolName)
{
    if (m_symbol == symbolName)
        return;
    m_symbol = symbolName;
    update();
}

void IconButton::setSizes(int symbolSize, int buttonSize)
{
    m_symbolSize = symbolSize;
    m_buttonSize = buttonSize;
    setFixedSize(buttonSize, buttonSize);
    update();
}

void IconButton::setColor(const QColor &color)
{
    m_color = color;
    update();
}

void IconButton::setHoverColor(const QColor &color)
{
    m_hoverColor = color;
    update();
}

QSize IconButton::sizeHint() const
{
    return QSize(m_buttonSize, m_buttonSize);
}

void IconButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    if (m_hovered || isDown() || m_focusRing) {
        painter.setPen(m_focusRing ? QPen(Theme::accent(), 1.5) : Qt::NoPen);
        painter.setBrush(QColor(255, 255, 255, isDown() ? 36 : (m_hovered ? 20 : 0)));
        painter.drawRoundedRect(box, 4, 4);
    }
    const QColor color = m_hovered ? m_hoverColor : m_color;
    const QPixmap pm = Icons::pixmap(m_symbol, color, m_symbolSize, devicePixelRatioF());
    painter.drawPixmap(QPointF((width() - m_symbolSize) / 2.0, (height() - m_symbolSize) / 2.0), pm);
}

void IconButton::enterEvent(QEnterEvent *event)
{
    m_hovered = true;
    update();
    QAbstractButton::enterEvent(event);
}

void IconButton::leaveEvent(QEvent *event)
{
    m_hovered = false;
    update();
    QAbstractButton::leaveEvent(event);
}

void IconButton::keyPressEvent(QKeyEvent *event)
{
    // Return and Enter press a focused button, as Space does.
    if (!event->isAutoRepeat() && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void IconButton::focusInEvent(QFocusEvent *event)
{
    m_focusRing = Theme::showsFocusRing(event->reason());
    update();
    QAbstractButton::focusInEvent(event);
}

void IconButton::focusOutEvent(QFocusEvent *event)
{
    m_focusRing = false;
    update();
    QAbstractButton::focusOutEvent(event);
}
