#include "ElidedLabel.h"

#include "Theme.h"

#include <QPainter>

ElidedLabel::ElidedLabel(const QString &text, QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setText(text);
}

void ElidedLabel::setText(const QString &text)
{
    m_text = singleLine(text);
    setToolTip(text);
    updateGeometry();
    update();
}

void ElidedLabel::setAlignment(Qt::Alignment alignment)
{
    m_alignment = alignment;
    update();
}

QString ElidedLabel::singleLine(QString text)
{
    for (QChar &c : text)
        if (c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QChar::LineSeparator
            || c == QChar::ParagraphSeparator)
            c = QLatin1Char(' ');
    return text;
}

QSize ElidedLabel::sizeHint() const
{
    return {qMin(fontMetrics().horizontalAdvance(m_text), 400), fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().horizontalAdvance(QStringLiteral("…")) * 2, fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(Theme::primaryText());
    painter.drawText(rect(), int(m_alignment), fontMetrics().elidedText(m_text, Qt::ElideRight, width()));
}
