#include "PaletteColorRow.h"

#include "CardPainting.h"
#include "ClipboardWriter.h"
#include "ElidedLabel.h"
#include "Theme.h"
#include "model/ColorFormats.h"
#include "storage/PaletteStorage.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>

namespace {
constexpr int padding = 8;
constexpr int swatchSize = 28;
constexpr int rowHeight = 44;
} // namespace

PaletteColorRow::PaletteColorRow(const ColorItem &color, const QUuid &paletteId, PaletteStorage &paletteStorage,
                                 QWidget *parent)
    : QWidget(parent)
    , m_color(color)
    , m_paletteId(paletteId)
    , m_paletteStorage(paletteStorage)
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAccessibleName(color.name);
    setAccessibleDescription(hexText());
    setToolTip(color.name + QLatin1Char('\n') + hexText());
}

QString PaletteColorRow::hexText() const
{
    return hexString(m_color.red, m_color.green, m_color.blue);
}

QSize PaletteColorRow::sizeHint() const
{
    return {200, rowHeight};
}

QSize PaletteColorRow::minimumSizeHint() const
{
    return {80, rowHeight};
}

void PaletteColorRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_hovered || hasFocus())
        CardPainting::paintCard(painter, rect(), m_hovered, hasFocus());

    const QRectF swatch(padding, (height() - swatchSize) / 2.0, swatchSize, swatchSize);
    const QColor fill = QColor::fromRgbF(float(qBound(0.0, m_color.red, 1.0)), float(qBound(0.0, m_color.green, 1.0)),
                                         float(qBound(0.0, m_color.blue, 1.0)), float(qBound(0.0, m_color.alpha, 1.0)));
    Theme::paintRoundedCard(painter, swatch, 6, fill, QColor(255, 255, 255, 51), 0.5);

    const int textLeft = int(swatch.right()) + 10;
    const int textWidth = width() - textLeft - padding;
    const QFont nameFont = Theme::font(14, QFont::Medium);
    const QFont hexFont = Theme::monospaceFont(11);
    const QFontMetrics nameMetrics(nameFont);
    const QFontMetrics hexMetrics(hexFont);
    const int textHeight = nameMetrics.height() + 1 + hexMetrics.height();
    const int top = (height() - textHeight) / 2;

    painter.setFont(nameFont);
    painter.setPen(Theme::primaryText());
    painter.drawText(QRect(textLeft, top, textWidth, nameMetrics.height()), Qt::AlignLeft | Qt::AlignVCenter,
                     nameMetrics.elidedText(ElidedLabel::singleLine(m_color.name), Qt::ElideRight, textWidth));
    painter.setFont(hexFont);
    painter.setPen(Theme::secondaryText());
    painter.drawText(QRect(textLeft, top + nameMetrics.height() + 1, textWidth, hexMetrics.height()),
                     Qt::AlignLeft | Qt::AlignVCenter, hexMetrics.elidedText(hexText(), Qt::ElideRight, textWidth));
}

void PaletteColorRow::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy)) {
        copyToClipboard(hexText());
        return;
    }
    if (event->key() == Qt::Key_F10 && (event->modifiers() & Qt::ShiftModifier)) {
        showContextMenu(mapToGlobal(rect().center()));
        return;
    }
    QWidget::keyPressEvent(event);
}

void PaletteColorRow::contextMenuEvent(QContextMenuEvent *event)
{
    showContextMenu(event->reason() == QContextMenuEvent::Keyboard ? mapToGlobal(rect().center())
                                                                    : event->globalPos());
}

void PaletteColorRow::showContextMenu(const QPoint &globalPos)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    Theme::styleMenu(menu);
    // Neither action touches the row: removing the color rebuilds the list.
    const QString hex = hexText();
    menu->addAction(tr("Copy Hex"), menu, [hex] { copyToClipboard(hex); });
    menu->addSeparator();
    PaletteStorage &storage = m_paletteStorage;
    const QUuid colorId = m_color.id;
    const QUuid paletteId = m_paletteId;
    menu->addAction(tr("Delete"), menu, [&storage, colorId, paletteId] { storage.removeColor(colorId, paletteId); });
    menu->popup(globalPos);
}

void PaletteColorRow::enterEvent(QEnterEvent *event)
{
    m_hovered = true;
    update();
    QWidget::enterEvent(event);
}

void PaletteColorRow::leaveEvent(QEvent *event)
{
    m_hovered = false;
    update();
    QWidget::leaveEvent(event);
}
