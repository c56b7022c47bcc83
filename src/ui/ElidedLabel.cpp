#include "ElidedLabel.h"

#include "Theme.h"

#include <QPainter>

ElidedLabel::ElidedLabel(const QString &text, QWidget *parent)
    : QWidget(parent)
    , m_text(singleLine(text))
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setToolTip(text);
}

QString ElidedLabel::singleLine(QString text)
{
    for (QChar &c : text)
        if (c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QChar::LineSeparator
            || c == QChar::ParagraphSeparator)
            c = QLatin1Char(' ');
    return text;
}

void ElidedLabel::setAlignment(Qt::Alignment alignment)
{
    m_alignment = alignment;
    update();
}

QSize ElidedLabel::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {qMin(metrics.horizontalAdvance(m_text), 400), metrics.height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().horizontalAdvance(QStringLiteral("…")) * 2, fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(Theme::primaryText());
    painter.drawText(rect(), int(m_alignment),
                     fontMetrics().elidedText(m_text, Qt::ElideRight, width()));
}
