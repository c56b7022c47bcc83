#include "SymbolView.h"

#include "Icons.h"

#include <QPainter>

SymbolView::SymbolView(const QString &symbolName, const QColor &color, int size, QWidget *parent)
    : QWidget(parent), m_symbol(symbolName), m_color(color), m_size(size)
{
    setFixedSize(size, size);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void SymbolView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.drawPixmap(QPointF(0, 0), Icons::pixmap(m_symbol, m_color, m_size, devicePixelRatioF()));
}
