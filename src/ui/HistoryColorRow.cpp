#include "HistoryColorRow.h"

#include "ClipboardWriter.h"
#include "Theme.h"
#include "model/ColorFormats.h"
#include "storage/HistoryStorage.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QFocusEvent>
#include <QPainter>

HistoryColorRow::HistoryColorRow(const ColorItem &color, HistoryStorage &historyStorage, QWidget *parent)
    : QAbstractButton(parent), m_color(color), m_historyStorage(historyStorage)
{
    const QString hex = hexString(color.red, color.green, color.blue);
    setText(hex);
    setObjectName(QStringLiteral("historyRow"));
    setAccessibleName(hex);
    setAccessibleDescription(tr("Copies %1").arg(hex));
    setToolTip(tr("Copy %1").arg(hex));
    setFont(Theme::font(13));
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setFixedHeight(rowHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, &HistoryColorRow::copyHex);
}

QSize HistoryColorRow::sizeHint() const
{
    return QSize(QFontMetrics(font()).horizontalAdvance(text()) + 12, rowHeight);
}

void HistoryColorRow::copyHex()
{
    copyToClipboard(text());
}

void HistoryColorRow::remove()
{
    // Every entry with this id; the list redraws from the store.
    m_historyStorage.removeColor(m_color.id);
}

QMenu *HistoryColorRow::createContextMenu(QWidget *parent)
{
    auto *menu = new QMenu(parent);
    Theme::styleMenu(menu);
    menu->addAction(tr("Copy Hex"), this, &HistoryColorRow::copyHex);
    menu->addAction(tr("Add to Palette"), this, &HistoryColorRow::addToPaletteRequested);
    menu->addSeparator();
    menu->addAction(tr("Remove"), this, &HistoryColorRow::remove);
    return menu;
}

void HistoryColorRow::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu *menu = createContextMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QPoint at = event->reason() == QContextMenuEvent::Mouse
                          ? event->globalPos()
                          : mapToGlobal(QPoint(8, height() / 2));
    menu->popup(at);
}

void HistoryColorRow::keyPressEvent(QKeyEvent *event)
{
    if (!event->isAutoRepeat() && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void HistoryColorRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_hovered || isDown() || m_focusRing) {
        painter.setPen(m_focusRing ? QPen(Theme::accent(), 1.5) : Qt::NoPen);
        painter.setBrush(QColor(255, 255, 255, isDown() ? 26 : (m_hovered ? 13 : 0)));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75), 6, 6);
    }
    painter.setPen(Theme::primaryText());
    painter.setFont(font());
    painter.drawText(rect().adjusted(6, 0, -6, 0), Qt::AlignLeft | Qt::AlignVCenter, text());
}

void HistoryColorRow::enterEvent(QEnterEvent *event)
{
    m_hovered = true;
    update();
    QAbstractButton::enterEvent(event);
}

void HistoryColorRow::leaveEvent(QEvent *event)
{
    m_hovered = false;
    update();
    QAbstractButton::leaveEvent(event);
}

void HistoryColorRow::focusInEvent(QFocusEvent *event)
{
    m_focusRing = Theme::showsFocusRing(event->reason());
    update();
    QAbstractButton::focusInEvent(event);
}

void HistoryColorRow::focusOutEvent(QFocusEvent *event)
{
    m_focusRing = false;
    update();
    QAbstractButton::focusOutEvent(event);
}
