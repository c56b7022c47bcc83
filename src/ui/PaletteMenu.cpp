#include "PaletteMenu.h"

#include "Icons.h"
#include "Theme.h"

#include <QAbstractItemView>
#include <QFocusEvent>
#include <QPainter>

namespace {
constexpr int horizontalPadding = 8;
constexpr int verticalPadding = 6;
constexpr int chevronSize = 12;
} // namespace

PaletteMenu::PaletteMenu(QWidget *parent)
    : QComboBox(parent)
{
    setFont(Theme::font(13));
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // The list opens in a popup window of its own, which does not inherit
    // the sheet's palette.
    Theme::applyDarkPalette(view()->window());
    Theme::applyDarkPalette(view());
}

QSize PaletteMenu::sizeHint() const
{
    const QFontMetrics fm(font());
    return QSize(120, fm.height() + 2 * verticalPadding);
}

QSize PaletteMenu::minimumSizeHint() const
{
    return sizeHint();
}

void PaletteMenu::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_focusRing)
        Theme::paintRoundedCard(painter, rect(), 6, Theme::material(), Theme::accent(), 1.0);
    else
        Theme::paintRoundedCard(painter, rect(), 6, Theme::material(), QColor(255, 255, 255, 26), 0.5);

    const int textRight = width() - horizontalPadding - chevronSize - 6;
    const QRect textRect(horizontalPadding, 0, textRight - horizontalPadding, height());
    painter.setFont(font());
    painter.setPen(currentIndex() == 0 ? Theme::secondaryText() : Theme::primaryText());
    painter.drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetrics(font()).elidedText(currentText(), Qt::ElideRight, textRect.width()));
    painter.drawPixmap(QPointF(width() - horizontalPadding - chevronSize, (height() - chevronSize) / 2.0),
                       Icons::pixmap(QStringLiteral("chevron.up.chevron.down"), Theme::secondaryText(),
                                     chevronSize, devicePixelRatioF()));
}

void PaletteMenu::focusInEvent(QFocusEvent *event)
{
    m_focusRing = Theme::showsFocusRing(event->reason());
    QComboBox::focusInEvent(event);
}

void PaletteMenu::focusOutEvent(QFocusEvent *event)
{
    m_focusRing = false;
    QComboBox::focusOutEvent(event);
}
