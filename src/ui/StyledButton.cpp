#include "StyledButton.h"

#include "Icons.h"

#include <QPainter>

namespace {
constexpr int horizontalPadding = 12;
constexpr int iconSpacing = 6;
constexpr qreal cornerRadius = 6;
} // namespace

StyledButton::StyledButton(Kind kind, const QString &text, QWidget *parent)
    : DrawnControl(parent)
    , m_kind(kind)
    , m_verticalPadding(isTextOnly() ? 2 : 5)
{
    setText(text);
    setAccessibleName(text);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setFont(Theme::font(13, kind == Kind::Prominent ? QFont::Medium : QFont::Normal));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void StyledButton::setSymbol(const QString &symbolName)
{
    m_symbol = symbolName;
    updateGeometry();
    update();
}

void StyledButton::setVerticalPadding(int padding)
{
    m_verticalPadding = padding;
    updateGeometry();
}

void StyledButton::setTextColor(const QColor &color)
{
    m_textColor = color;
    update();
}

QSize StyledButton::sizeHint() const
{
    const QFontMetrics fm(font());
    int width = fm.horizontalAdvance(text()) + 2 * (isTextOnly() ? 2 : horizontalPadding);
    if (!m_symbol.isEmpty())
        width += fm.height() + iconSpacing;
    return QSize(width + 2, fm.height() + 2 * m_verticalPadding);
}

QColor StyledButton::foreground() const
{
    if (!isEnabled())
        return Theme::withAlpha(Theme::primaryText(), 0.4);
    if (m_textColor.isValid())
        return isHovered() ? m_textColor.lighter(130) : m_textColor;
    if (m_kind == Kind::Prominent)
        return Qt::white;
    if (m_kind == Kind::Link)
        return Theme::accent().lighter(isHovered() ? 120 : 110);
    return Theme::primaryText();
}

void StyledButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool hovered = isHovered() && isEnabled();
    QColor fill = Qt::transparent;
    QColor stroke = Qt::transparent;
    switch (m_kind) {
    case Kind::Prominent:
        fill = isEnabled() ? Theme::accent() : Theme::withAlpha(Theme::accent(), 0.35);
        if (isDown())
            fill = fill.darker(115);
        else if (hovered)
            fill = fill.lighter(112);
        break;
    case Kind::Bordered:
        fill = QColor(255, 255, 255, isDown() ? 46 : (hovered ? 36 : 26));
        stroke = QColor(255, 255, 255, 20);
        break;
    case Kind::Link:
    case Kind::Plain:
        if (isDown())
            fill = QColor(255, 255, 255, 20);
        break;
    }
    if (showsFocusRing())
        stroke = m_kind == Kind::Prominent ? QColor(255, 255, 255, 200) : Theme::accent();
    painter.setPen(stroke.alpha() ? QPen(stroke, showsFocusRing() ? 1.5 : 0.5) : Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);

    // Symbol and text centred together; a text too long for the button is
    // elided (text-only kinds start at the left edge then).
    const QColor color = foreground();
    const QFontMetrics fm(font());
    const int iconSide = m_symbol.isEmpty() ? 0 : qRound(fm.height() * 0.9);
    const int iconWidth = iconSide ? iconSide + iconSpacing : 0;
    const int available = width() - 2 * (isTextOnly() ? 2 : 4) - iconWidth;
    int x = (width() - iconWidth - qMin(fm.horizontalAdvance(text()), available)) / 2;
    if (isTextOnly())
        x = qMax(0, x);
    if (iconSide) {
        painter.drawPixmap(QPointF(x, (height() - iconSide) / 2.0),
                           Icons::pixmap(m_symbol, color, iconSide, devicePixelRatioF()));
        x += iconWidth;
    }
    painter.setPen(color);
    painter.setFont(font());
    painter.drawText(QRect(x, 0, width() - x, height()), Qt::AlignLeft | Qt::AlignVCenter,
                     fm.elidedText(text(), Qt::ElideRight, qMax(0, available)));
}
