#include "RoundedSwatch.h"

#include "Theme.h"

#include <QPainter>

RoundedSwatch::RoundedSwatch(qreal cornerRadius, QWidget *parent)
    : QWidget(parent)
    , m_cornerRadius(cornerRadius)
{
}

void RoundedSwatch::setColor(const QColor &color)
{
    m_color = color;
    update();
}

void RoundedSwatch::setUnderlay(const QColor &color)
{
    m_underlay = color;
    update();
}

void RoundedSwatch::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_underlay.alpha() > 0)
        Theme::paintRoundedCard(painter, rect(), m_cornerRadius, m_underlay, Qt::transparent, 0);
    Theme::paintRoundedCard(painter, rect(), m_cornerRadius, m_color, QColor(255, 255, 255, 77), 0.5);
}
