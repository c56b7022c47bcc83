#include "MenuBarPaletteRow.h"

#include "CardPainting.h"
#include "ElidedLabel.h"
#include "Icons.h"
#include "Theme.h"
#include "storage/PaletteStorage.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>

namespace {
constexpr int padding = 10;
constexpr int topLineHeight = 18;
constexpr int lineSpacing = 8;
constexpr int stripHeight = 16;
constexpr int chevronSize = 10;

QColor colorOf(const ColorItem &item)
{
    // Stored components are unclamped; the strip shows what a screen can.
    return QColor::fromRgbF(float(qBound(0.0, item.red, 1.0)), float(qBound(0.0, item.green, 1.0)),
                            float(qBound(0.0, item.blue, 1.0)), float(qBound(0.0, item.alpha, 1.0)));
}
} // namespace

MenuBarPaletteRow::MenuBarPaletteRow(const Palette &palette, PaletteStorage &paletteStorage, QWidget *parent)
    : QWidget(parent)
    , m_palette(palette)
    , m_paletteStorage(paletteStorage)
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAccessibleName(palette.name);
    const qsizetype count = palette.colors.size();
    setAccessibleDescription(count == 1 ? tr("1 color") : tr("%1 colors").arg(count));
    setToolTip(palette.name);
}

QString MenuBarPaletteRow::countText() const
{
    return QString::number(qint64(m_palette.colors.size()));
}

QSize MenuBarPaletteRow::sizeHint() const
{
    return {200, padding + topLineHeight + lineSpacing + stripHeight + padding};
}

QSize MenuBarPaletteRow::minimumSizeHint() const
{
    return {80, sizeHint().height()};
}

void MenuBarPaletteRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    CardPainting::paintCard(painter, rect(), m_hovered || m_pressed, hasFocus());

    const QRect content = rect().adjusted(padding, padding, -padding, -padding);
    const QRect topLine(content.left(), content.top(), content.width(), topLineHeight);

    // Trailing side first: chevron, then the count; the name takes the rest.
    const QRect chevronRect(topLine.right() - chevronSize + 1, topLine.center().y() - chevronSize / 2,
                            chevronSize, chevronSize);
    if (m_chevron.isNull() || !qFuzzyCompare(m_chevron.devicePixelRatio(), devicePixelRatioF()))
        m_chevron = Icons::pixmap(QStringLiteral("chevron.right"), Theme::secondaryText(), chevronSize,
                                  devicePixelRatioF());
    painter.drawPixmap(chevronRect, m_chevron);

    const QString count = countText();
    const QFont countFont = Theme::font(11);
    const int countWidth = QFontMetrics(countFont).horizontalAdvance(count);
    const QRect countRect(chevronRect.left() - 6 - countWidth, topLine.top(), countWidth, topLine.height());
    painter.setFont(countFont);
    painter.setPen(Theme::secondaryText());
    painter.drawText(countRect, Qt::AlignRight | Qt::AlignVCenter, count);

    const QFont nameFont = Theme::font(13, QFont::Medium);
    const QRect nameRect(topLine.left(), topLine.top(), countRect.left() - 8 - topLine.left(), topLine.height());
    painter.setFont(nameFont);
    painter.setPen(Theme::primaryText());
    painter.drawText(nameRect, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetrics(nameFont).elidedText(ElidedLabel::singleLine(m_palette.name), Qt::ElideRight, nameRect.width()));

    paintStrip(painter, QRectF(content.left(), topLine.bottom() + 1 + lineSpacing, content.width(), stripHeight));
}

void MenuBarPaletteRow::paintStrip(QPainter &painter, const QRectF &rect) const
{
    QPainterPath rounded;
    rounded.addRoundedRect(rect, 4, 4);
    if (m_palette.colors.isEmpty()) {
        painter.fillPath(rounded, Theme::withAlpha(Theme::secondaryText(), 0.1));
        return;
    }
    // Segment edges on whole pixels, so neighbours meet without seams.
    const qsizetype n = m_palette.colors.size();
    for (qsizetype i = 0; i < n; ++i) {
        const qreal left = rect.left() + qRound(rect.width() * qreal(i) / qreal(n));
        const qreal right = rect.left() + qRound(rect.width() * qreal(i + 1) / qreal(n));
        if (right <= left)
            continue;
        QPainterPath segment;
        segment.addRect(QRectF(left, rect.top(), right - left, rect.height()));
        painter.fillPath(rounded.intersected(segment), colorOf(m_palette.colors.at(i)));
    }
}

void MenuBarPaletteRow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        m_pressed = true;
        update();
    }
    QWidget::mousePressEvent(event);
}

void MenuBarPaletteRow::mouseReleaseEvent(QMouseEvent *event)
{
    const bool wasPressed = m_pressed;
    m_pressed = false;
    update();
    if (event->button() == Qt::LeftButton && wasPressed && rect().contains(event->position().toPoint()))
        emit tapped();
}

void MenuBarPaletteRow::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        emit tapped();
        return;
    case Qt::Key_F10:
        if (event->modifiers() & Qt::ShiftModifier) {
            showContextMenu(mapToGlobal(rect().center()));
            return;
        }
        break;
    default:
        break;
    }
    QWidget::keyPressEvent(event);
}

void MenuBarPaletteRow::contextMenuEvent(QContextMenuEvent *event)
{
    showContextMenu(event->reason() == QContextMenuEvent::Keyboard ? mapToGlobal(rect().center())
                                                                    : event->globalPos());
}

void MenuBarPaletteRow::showContextMenu(const QPoint &globalPos)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    Theme::styleMenu(menu);
    // The action must not touch the row: deleting the palette rebuilds the list.
    PaletteStorage &storage = m_paletteStorage;
    const QUuid id = m_palette.id;
    menu->addAction(tr("Delete"), menu, [&storage, id] { storage.deletePalette(id); });
    menu->popup(globalPos);
}

void MenuBarPaletteRow::enterEvent(QEnterEvent *event)
{
    m_hovered = true;
    update();
    QWidget::enterEvent(event);
}

void MenuBarPaletteRow::leaveEvent(QEvent *event)
{
    m_hovered = false;
    m_pressed = false;
    update();
    QWidget::leaveEvent(event);
}
