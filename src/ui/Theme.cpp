#include "Theme.h"

#include <algorithm>

#include <QAbstractScrollArea>
#include <QFontDatabase>
#include <QLabel>
#include <QLinearGradient>
#include <QMenu>
#include <QPainter>
#include <QPalette>
#include <QScreen>
#include <QScrollBar>
#include <QToolTip>
#include <QWidget>

namespace Theme {

QColor windowBase()
{
    return QColor(30, 30, 32);
}
QColor primaryText()
{
    return QColor(255, 255, 255, 217);
} // white at 0.85
QColor secondaryText()
{
    return QColor(255, 255, 255, 140);
} // white at 0.55
QColor material()
{
    return QColor(255, 255, 255, 15);
}
QColor accent()
{
    return QColor(10, 132, 255);
}

QColor withAlpha(QColor color, qreal alpha)
{
    color.setAlphaF(float(color.alphaF() * alpha));
    return color;
}

QFont font(int pixelSize, QFont::Weight weight)
{
    QFont f = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    f.setPixelSize(pixelSize);
    f.setWeight(weight);
    return f;
}

QFont monospaceFont(int pixelSize, QFont::Weight weight)
{
    QFont f = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    f.setStyleHint(QFont::Monospace);
    f.setPixelSize(pixelSize);
    f.setWeight(weight);
    return f;
}

QLabel *makeLabel(const QString &text, const QFont &font, const QColor &color, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setFont(font);
    QPalette p = label->palette();
    p.setColor(QPalette::WindowText, color);
    label->setPalette(p);
    return label;
}

void paintRoundedCard(QPainter &painter, const QRectF &rect, qreal radius, const QColor &fill,
                      const QColor &stroke, qreal strokeWidth)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    // Keep the hairline inside the rect so neighbours do not clip it.
    const qreal inset = strokeWidth / 2;
    const QRectF r = rect.adjusted(inset, inset, -inset, -inset);
    painter.setPen(strokeWidth > 0 ? QPen(stroke, strokeWidth) : Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(r, radius, radius);
    painter.restore();
}

void paintCard(QPainter &painter, const QRectF &rect, bool hovered, bool focused)
{
    constexpr qreal radius = 10;
    const QColor fill = hovered ? withAlpha(material(), 2.0) : material();
    if (focused) {
        paintRoundedCard(painter, rect, radius, fill, accent(), 1.0);
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF r = rect.adjusted(0.25, 0.25, -0.25, -0.25);
    QLinearGradient border(r.topLeft(), r.bottomRight());
    border.setColorAt(0, QColor(255, 255, 255, 51)); // white at 0.2
    border.setColorAt(1, Qt::transparent);
    painter.setPen(QPen(QBrush(border), 0.5));
    painter.setBrush(fill);
    painter.drawRoundedRect(r, radius, radius);
    painter.restore();
}

bool showsFocusRing(Qt::FocusReason reason)
{
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason
        || reason == Qt::ShortcutFocusReason || reason == Qt::OtherFocusReason;
}

void styleScrollBars(QAbstractScrollArea *area)
{
    area->verticalScrollBar()->setStyleSheet(QStringLiteral(
        "QScrollBar:vertical { background: transparent; width: 8px; margin: 2px 2px 2px 0; }"
        "QScrollBar::handle:vertical { background: rgba(255, 255, 255, 0.22); border-radius: 3px;"
        " min-height: 24px; }"
        "QScrollBar::handle:vertical:hover { background: rgba(255, 255, 255, 0.35); }"
        "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
        "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: transparent; }"));
}

void paintSheetBackground(QWidget *sheet)
{
    QPainter painter(sheet);
    painter.fillRect(sheet->rect(), QColor(40, 40, 43));
    painter.setPen(QPen(QColor(255, 255, 255, 38), 1));
    painter.drawRect(QRectF(sheet->rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

void placeOverParent(QWidget *dialog)
{
    QWidget *parent = dialog->parentWidget();
    if (!parent)
        return;
    const QRect frame = parent->window()->geometry();
    QPoint at(frame.x() + (frame.width() - dialog->width()) / 2, frame.y() + 44);
    // A sheet wider than the window must not hang off the screen when the
    // window stands at its edge.
    if (const QScreen *screen = parent->window()->screen()) {
        const QRect available = screen->availableGeometry();
        at.setX(std::clamp(at.x(), available.left(),
                           std::max(available.left(), available.right() + 1 - dialog->width())));
        at.setY(std::clamp(at.y(), available.top(),
                           std::max(available.top(), available.bottom() + 1 - dialog->height())));
    }
    dialog->move(at);
}

QWidget *makeDivider(qreal opacity, QWidget *parent)
{
    auto *divider = new QWidget(parent);
    divider->setObjectName(QStringLiteral("divider"));
    divider->setFixedHeight(1);
    divider->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    QPalette p = divider->palette();
    p.setColor(QPalette::Window, QColor(255, 255, 255, qRound(26 * opacity)));
    divider->setPalette(p);
    divider->setAutoFillBackground(true);
    return divider;
}

void applyDarkPalette(QWidget *widget)
{
    QPalette p = widget->palette();
    p.setColor(QPalette::Window, windowBase());
    p.setColor(QPalette::WindowText, primaryText());
    p.setColor(QPalette::Base, QColor(44, 44, 46));
    p.setColor(QPalette::AlternateBase, QColor(50, 50, 52));
    p.setColor(QPalette::Text, primaryText());
    p.setColor(QPalette::PlaceholderText, secondaryText());
    p.setColor(QPalette::Button, QColor(58, 58, 60));
    p.setColor(QPalette::ButtonText, primaryText());
    p.setColor(QPalette::Highlight, accent());
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::ToolTipBase, QColor(44, 44, 46));
    p.setColor(QPalette::ToolTipText, primaryText());
    p.setColor(QPalette::Link, accent());
    p.setColor(QPalette::Disabled, QPalette::ButtonText, secondaryText());
    p.setColor(QPalette::Disabled, QPalette::WindowText, secondaryText());
    p.setColor(QPalette::Disabled, QPalette::Text, secondaryText());
    widget->setPalette(p);
}

void styleMenu(QMenu *menu)
{
    applyDarkPalette(menu);
    menu->setStyleSheet(QStringLiteral(
        "QMenu { background: rgb(44, 44, 46); border: 1px solid rgba(255, 255, 255, 0.15);"
        " padding: 4px 0; }"
        "QMenu::item { color: rgba(255, 255, 255, 0.85); padding: 4px 20px 4px 14px; }"
        "QMenu::item:selected { background: rgb(10, 132, 255); color: white; }"
        "QMenu::separator { height: 1px; background: rgba(255, 255, 255, 0.2); margin: 4px 8px; }"));
}

void styleToolTips()
{
    QPalette p = QToolTip::palette();
    p.setColor(QPalette::ToolTipBase, QColor(44, 44, 46));
    p.setColor(QPalette::ToolTipText, primaryText());
    p.setColor(QPalette::Window, QColor(44, 44, 46));
    p.setColor(QPalette::WindowText, primaryText());
    QToolTip::setPalette(p);
}

} // namespace Theme
