#include "RoundedLineEdit.h"

#include "Theme.h"

#include <QPainter>

namespace {
constexpr qreal cornerRadius = 6;
constexpr int verticalPadding = 6;
} // namespace

RoundedLineEdit::RoundedLineEdit(int horizontalPadding, QWidget *parent)
    : QLineEdit(parent)
{
    setFrame(false);
    setFont(Theme::font(13));
    setTextMargins(horizontalPadding, verticalPadding, horizontalPadding, verticalPadding);
    // The card is painted below; the standard panel must not cover it.
    QPalette p = palette();
    p.setColor(QPalette::Base, Qt::transparent);
    p.setColor(QPalette::Text, Theme::primaryText());
    p.setColor(QPalette::PlaceholderText, Theme::secondaryText());
    p.setColor(QPalette::Highlight, Theme::withAlpha(Theme::accent(), 0.6));
    p.setColor(QPalette::HighlightedText, Qt::white);
    setPalette(p);
    setAttribute(Qt::WA_MacShowFocusRect, false);
}

void RoundedLineEdit::paintEvent(QPaintEvent *event)
{
    {
        QPainter painter(this);
        if (hasFocus())
            Theme::paintRoundedCard(painter, rect(), cornerRadius, Theme::material(), Theme::accent(), 1.0);
        else
            Theme::paintRoundedCard(painter, rect(), cornerRadius, Theme::material(),
                                    QColor(255, 255, 255, 26), 0.5);
    }
    QLineEdit::paintEvent(event);
}
