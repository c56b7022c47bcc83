#include "IconButton.h"

#include "Icons.h"

#include <QPainter>

IconButton::IconButton(const QString &symbolName, const QString &name, QWidget *parent)
    : DrawnControl(parent)
    , m_symbol(symbolName)
    , m_color(Theme::secondaryText())
    , m_hoverColor(Theme::primaryText())
{
    setToolTip(name);
    setAccessibleName(name);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setFixedSize(18, 18);
}

void IconButton::setSymbol(const QString &symbolName)
{
    m_symbol = symbolName;
    update();
}

void IconButton::setSizes(int symbolSize, int buttonSize)
{
    m_symbolSize = symbolSize;
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

void IconButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isHovered() || isDown() || showsFocusRing()) {
        painter.setPen(showsFocusRing() ? QPen(Theme::accent(), 1.5) : Qt::NoPen);
        painter.setBrush(QColor(255, 255, 255, isDown() ? 36 : (isHovered() ? 20 : 0)));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    }
    const QPixmap pm =
        Icons::pixmap(m_symbol, isHovered() ? m_hoverColor : m_color, m_symbolSize, devicePixelRatioF());
    painter.drawPixmap(QPointF((width() - m_symbolSize) / 2.0, (height() - m_symbolSize) / 2.0), pm);
}
