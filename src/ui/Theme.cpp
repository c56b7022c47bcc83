#include "Theme.h"

#include "DarkStyle.h"

#include <QApplication>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QLinearGradient>
#include <QPainter>
#include <QPalette>
#include <QPushButton>
#include <QScreen>
#include <QToolTip>

#include <algorithm>

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

void install()
{
    QApplication::setStyle(new DarkStyle);
    QPalette p = QApplication::palette();
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
    QApplication::setPalette(p);
    // Tooltips are windows of their own, with a palette of their own.
    QPalette tips = QToolTip::palette();
    tips.setColor(QPalette::ToolTipBase, QColor(44, 44, 46));
    tips.setColor(QPalette::ToolTipText, primaryText());
    tips.setColor(QPalette::Window, QColor(44, 44, 46));
    tips.setColor(QPalette::WindowText, primaryText());
    QToolTip::setPalette(tips);
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

QPushButton *makeButton(ButtonKind kind, const QString &text, QWidget *parent, const QString &symbol)
{
    static const char *const kinds[] = {"prominent", "bordered", "link", "plain"};
    auto *button = new QPushButton(text, parent);
    button->setProperty("kind", QLatin1String(kinds[int(kind)]));
    button->setProperty("symbol", symbol);
    button->setFont(font(13, kind == ButtonKind::Prominent ? QFont::Medium : QFont::Normal));
    button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    return button;
}

QPushButton *makeIconButton(const QString &symbol, const QString &name, int symbolSize, int buttonSize,
                            QWidget *parent)
{
    auto *button = new QPushButton(parent);
    button->setProperty("kind", QStringLiteral("icon"));
    button->setProperty("symbol", symbol);
    button->setProperty("symbolSize", symbolSize);
    button->setToolTip(name);
    button->setAccessibleName(name);
    button->setFixedSize(buttonSize, buttonSize);
    return button;
}

void setSymbol(QPushButton *button, const QString &symbol)
{
    button->setProperty("symbol", symbol);
    button->update();
}

QLineEdit *makeField(int horizontalPadding, QWidget *parent)
{
    auto *field = new QLineEdit(parent);
    field->setFrame(false);
    field->setFont(font(13));
    field->setTextMargins(horizontalPadding, 6, horizontalPadding, 6);
    return field;
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

} // namespace Theme
