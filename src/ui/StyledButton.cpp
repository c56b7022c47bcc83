#include "StyledButton.h"

#include "Icons.h"
#include "Theme.h"

#include <QKeyEvent>
#include <QFocusEvent>
#include <QPainter>
#include <QPainterPath>

namespace {
constexpr int horizontalPadding = 12;
constexpr int iconSpacing = 6;
constexpr qreal cornerRadius = 6;
} // namespace

StyledButton::StyledButton(Kind kind, const QString &text, QWidget *parent)
    : QAbstractButton(parent), m_kind(kind)
{
    setText(text);
    setAccessibleName(text);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setFont(Theme::font(13, kind == Kind::Prominent ? QFont::Medium : QFont::Normal));
    if (kind == Kind::Link || kind == Kind::Plain)
        m_verticalPadding = 2;
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
    const int pad = (m_kind == Kind::Link || m_kind == Kind::Plain) ? 2 : horizontalPadding;
    int width = fm.horizontalAdvance(text()) + 2 * pad;
    if (!m_symbol.isEmpty())
        width += fm.height() + iconSpacing;
    return QSize(width + 2, fm.height() + 2 * m_verticalPadding);
}

QSize StyledButton::minimumSizeHint() const
{
    return sizeHint();
}

QColor StyledButton::foreground() const
{
    if (!isEnabled())
        return Theme::withAlpha(Theme::primaryText(), 0.4);
    if (m_textColor.isValid())
        return m_hovered ? m_textColor.lighter(130) : m_textColor;
    switch (m_kind) {
    case Kind::Prominent:
        return Qt::white;
    case Kind::Link:
        return m_hovered ? Theme::accent().lighter(120) : Theme::accent().lighter(110);
    case Kind::Bordered:
    case Kind::Plain:
        break;
    }
    return Theme::primaryText();
}

void StyledButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);

    QColor fill = Qt::transparent;
    QColor stroke = Qt::transparent;
    switch (m_kind) {
    case Kind::Prominent:
        fill = isEnabled() ? Theme::accent() : Theme::withAlpha(Theme::accent(), 0.35);
        if (isDown())
            fill = fill.darker(115);
        else if (m_hovered && isEnabled())
            fill = fill.lighter(112);
        break;
    case Kind::Bordered:
        fill = QColor(255, 255, 255, isDown() ? 46 : (m_hovered && isEnabled() ? 36 : 26));
        stroke = QColor(255, 255, 255, 20);
        break;
    case Kind::Link:
    case Kind::Plain:
        if (isDown())
            fill = QColor(255, 255, 255, 20);
        break;
    }
    if (m_focusRing)
        stroke = m_kind == Kind::Prominent ? QColor(255, 255, 255, 200) : Theme::accent();
    painter.setPen(stroke.alpha() ? QPen(stroke, m_focusRing ? 1.5 : 0.5) : Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(box, cornerRadius, cornerRadius);

    const QColor color = foreground();
    const QFontMetrics fm(font());
    const int iconSide = m_symbol.isEmpty() ? 0 : qRound(fm.height() * 0.9);
    const int textWidth = fm.horizontalAdvance(text());
    const int pad = (m_kind == Kind::Link || m_kind == Kind::Plain) ? 2 : 4;
    const int available = width() - 2 * pad - (iconSide ? iconSide + iconSpacing : 0);
    const QString shown = fm.elidedText(text(), Qt::ElideRight, qMax(0, available));
    const int contentWidth = (iconSide ? iconSide + iconSpacing : 0) + qMin(textWidth, available);
    int x = (width() - contentWidth) / 2;
    if (m_kind == Kind::Link || m_kind == Kind::Plain)
        x = qMax(0, x);
    if (iconSide) {
        const QPixmap pm = Icons::pixmap(m_symbol, color, iconSide, devicePixelRatioF());
        painter.drawPixmap(QPointF(x, (height() - iconSide) / 2.0), pm);
        x += iconSide + iconSpacing;
    }
    painter.setPen(color);
    painter.setFont(font());
    painter.drawText(QRect(x, 0, width() - x, height()), Qt::AlignLeft | Qt::AlignVCenter, shown);
}

void StyledButton::enterEvent(QEnterEvent *event)
{
    m_hovered = true;
    update();
    QAbstractButton::enterEvent(event);
}

void StyledButton::leaveEvent(QEvent *event)
{
    m_hovered = false;
    update();
    QAbstractButton::leaveEvent(event);
}

void StyledButton::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange)
        update();
    QAbstractButton::changeEvent(event);
}

void StyledButton::keyPressEvent(QKeyEvent *event)
{
    // Return and Enter press a focused button, as Space does.
    if (!event->isAutoRepeat() && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void StyledButton::focusInEvent(QFocusEvent *event)
{
    m_focusRing = Theme::showsFocusRing(event->reason());
    update();
    QAbstractButton::focusInEvent(event);
}

void StyledButton::focusOutEvent(QFocusEvent *event)
{
    m_focusRing = false;
    update();
    QAbstractButton::focusOutEvent(event);
}
