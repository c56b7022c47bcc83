#include "DarkStyle.h"

#include "Icons.h"
#include "Theme.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFocusEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QStyleFactory>
#include <QStyleOption>
#include <QTabBar>

namespace {

constexpr int iconSpacing = 6;
constexpr int menuTextLeft = 14;
constexpr int menuTextRight = 21;

QString kindOf(const QWidget *widget)
{
    return widget ? widget->property("kind").toString() : QString();
}

bool isTextOnly(const QString &kind)
{
    return kind == QLatin1String("link") || kind == QLatin1String("plain");
}

int verticalPadding(const QWidget *widget, const QString &kind)
{
    const QVariant padding = widget->property("verticalPadding");
    return padding.isValid() ? padding.toInt() : (isTextOnly(kind) ? 2 : 5);
}

bool keyboardReason(Qt::FocusReason reason)
{
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason
        || reason == Qt::ShortcutFocusReason || reason == Qt::OtherFocusReason;
}

// A field's rounded card: the accent edge while focused.
void paintField(QPainter *painter, const QRect &rect, bool accented)
{
    Theme::paintRoundedCard(*painter, rect, 6, Theme::material(),
                            accented ? Theme::accent() : QColor(255, 255, 255, 26), accented ? 1.0 : 0.5);
}

} // namespace

DarkStyle::DarkStyle()
    : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion")))
{
}

bool DarkStyle::showsFocusRing(const QWidget *widget)
{
    return widget && s_ringed == widget && widget->hasFocus();
}

void DarkStyle::polish(QWidget *widget)
{
    QProxyStyle::polish(widget);
    if (auto *button = qobject_cast<QPushButton *>(widget))
        button->setAutoDefault(true); // Return and Enter press it
    if (qobject_cast<QAbstractButton *>(widget) || qobject_cast<QTabBar *>(widget)
        || qobject_cast<QComboBox *>(widget))
        widget->setCursor(Qt::PointingHandCursor);
    if (auto *edit = qobject_cast<QLineEdit *>(widget)) {
        QPalette palette = edit->palette();
        palette.setColor(QPalette::Highlight, Theme::withAlpha(Theme::accent(), 0.6));
        palette.setColor(QPalette::HighlightedText, Qt::white);
        edit->setPalette(palette);
    }
    if (qobject_cast<QAbstractButton *>(widget) || qobject_cast<QComboBox *>(widget)
        || qobject_cast<QTabBar *>(widget) || qobject_cast<QAbstractItemView *>(widget)
        || (widget->parentWidget() && qobject_cast<QAbstractItemView *>(widget->parentWidget())))
        widget->installEventFilter(this);
}

void DarkStyle::unpolish(QWidget *widget)
{
    widget->removeEventFilter(this);
    QProxyStyle::unpolish(widget);
}

bool DarkStyle::eventFilter(QObject *watched, QEvent *event)
{
    auto *widget = static_cast<QWidget *>(watched);
    const auto *view = qobject_cast<QAbstractItemView *>(widget);
    QPointer<QWidget> ringed = s_ringed;
    switch (event->type()) {
    case QEvent::FocusIn: {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (keyboardReason(reason))
            ringed = widget;
        else if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason)
            ringed = nullptr;
        break;
    }
    case QEvent::FocusOut: {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (ringed == widget && reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason)
            ringed = nullptr;
        break;
    }
    case QEvent::KeyPress:
        // Moving through a list by keys shows where one is.
        if (view)
            ringed = widget;
        break;
    case QEvent::MouseButtonPress:
        if (ringed && (ringed == widget || ringed == widget->parentWidget())
            && qobject_cast<QAbstractItemView *>(ringed))
            ringed = nullptr;
        break;
    default:
        break;
    }
    if (ringed != s_ringed) {
        for (QWidget *changed : {s_ringed.data(), ringed.data()}) {
            if (auto *list = qobject_cast<QAbstractItemView *>(changed))
                list->viewport()->update();
            else if (changed)
                changed->update();
        }
        s_ringed = ringed;
    }
    return QProxyStyle::eventFilter(watched, event);
}

void DarkStyle::drawButton(const QStyleOptionButton &option, QPainter *painter, const QWidget *widget) const
{
    const QString kind = kindOf(widget);
    const bool enabled = option.state & State_Enabled;
    const bool hovered = enabled && (option.state & State_MouseOver);
    const bool down = option.state & State_Sunken;
    const bool ring = (option.state & State_HasFocus) && showsFocusRing(widget);
    const QRect rect = option.rect;
    QColor fill = Qt::transparent;
    QColor stroke = Qt::transparent;
    if (kind == QLatin1String("prominent")) {
        fill = enabled ? Theme::accent() : Theme::withAlpha(Theme::accent(), 0.35);
        fill = down ? fill.darker(115) : hovered ? fill.lighter(112) : fill;
    } else if (kind == QLatin1String("bordered")) {
        fill = QColor(255, 255, 255, down ? 46 : (hovered ? 36 : 26));
        stroke = QColor(255, 255, 255, 20);
    } else if (down) {
        fill = QColor(255, 255, 255, 20);
    }
    if (ring)
        stroke = kind == QLatin1String("prominent") ? QColor(255, 255, 255, 200) : Theme::accent();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(stroke.alpha() ? QPen(stroke, ring ? 1.5 : 0.5) : Qt::NoPen);
    painter->setBrush(fill);
    painter->drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);

    const QColor custom = widget->property("textColor").value<QColor>();
    QColor color = !enabled                  ? Theme::withAlpha(Theme::primaryText(), 0.4)
        : custom.isValid()                   ? (option.state & State_MouseOver ? custom.lighter(130) : custom)
        : kind == QLatin1String("prominent") ? QColor(Qt::white)
        : kind == QLatin1String("link") ? Theme::accent().lighter(option.state & State_MouseOver ? 120 : 110)
                                        : Theme::primaryText();
    // Symbol and text centred together; a text too long for the button is
    // elided (text-only kinds start at the left edge then).
    const QFontMetrics fm(widget->font());
    const QString symbol = widget->property("symbol").toString();
    const int iconSide = symbol.isEmpty() ? 0 : qRound(fm.height() * 0.9);
    const int iconWidth = iconSide ? iconSide + iconSpacing : 0;
    const int available = rect.width() - 2 * (isTextOnly(kind) ? 2 : 4) - iconWidth;
    int x = rect.x() + (rect.width() - iconWidth - qMin(fm.horizontalAdvance(option.text), available)) / 2;
    if (isTextOnly(kind))
        x = qMax(rect.x(), x);
    if (iconSide) {
        painter->drawPixmap(QPointF(x, rect.y() + (rect.height() - iconSide) / 2.0),
                            Icons::pixmap(symbol, color, iconSide, painter->device()->devicePixelRatioF()));
        x += iconWidth;
    }
    painter->setPen(color);
    painter->setFont(widget->font());
    painter->drawText(QRect(x, rect.y(), rect.right() + 1 - x, rect.height()),
                      Qt::AlignLeft | Qt::AlignVCenter,
                      fm.elidedText(option.text, Qt::ElideRight, qMax(0, available)));
    painter->restore();
}

void DarkStyle::drawIconButton(const QStyleOptionButton &option, QPainter *painter,
                               const QWidget *widget) const
{
    const bool hovered = option.state & State_MouseOver;
    const bool down = option.state & State_Sunken;
    const bool ring = (option.state & State_HasFocus) && showsFocusRing(widget);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (hovered || down || ring) {
        painter->setPen(ring ? QPen(Theme::accent(), 1.5) : Qt::NoPen);
        painter->setBrush(QColor(255, 255, 255, down ? 36 : (hovered ? 20 : 0)));
        painter->drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    }
    const QVariant sizeProperty = widget->property("symbolSize");
    const int side = sizeProperty.isValid() ? sizeProperty.toInt() : 10;
    const QColor normal = widget->property("textColor").value<QColor>();
    const QColor hover = widget->property("hoverColor").value<QColor>();
    const QColor color = hovered ? (hover.isValid() ? hover : Theme::primaryText())
                                 : (normal.isValid() ? normal : Theme::secondaryText());
    const QPointF at = QRectF(option.rect).center() - QPointF(side / 2.0, side / 2.0);
    painter->drawPixmap(at,
                        Icons::pixmap(widget->property("symbol").toString(), color, side,
                                      painter->device()->devicePixelRatioF()));
    painter->restore();
}

void DarkStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const
{
    switch (element) {
    case PE_PanelLineEdit:
        if (qobject_cast<const QLineEdit *>(widget)) {
            paintField(painter, option->rect, option->state & State_HasFocus);
            return;
        }
        break;
    case PE_FrameFocusRect:
        return; // each control draws its own ring
    case PE_PanelMenu:
        painter->fillRect(option->rect, QColor(44, 44, 46));
        return;
    case PE_FrameMenu:
        painter->setPen(QColor(255, 255, 255, 38));
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        return;
    case PE_FrameTabBarBase:
        return;
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void DarkStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                            const QWidget *widget) const
{
    switch (element) {
    case CE_PushButton:
        if (const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
            button && !kindOf(widget).isEmpty()) {
            if (kindOf(widget) == QLatin1String("icon"))
                drawIconButton(*button, painter, widget);
            else
                drawButton(*button, painter, widget);
            return;
        }
        break;
    case CE_TabBarTab:
        if (const auto *tab = qstyleoption_cast<const QStyleOptionTab *>(option)) {
            // Tabs stand 4 apart; the selected one on a faint rounded fill.
            const auto *bar = qobject_cast<const QTabBar *>(widget);
            const bool selected = tab->state & State_Selected;
            const bool ring = (tab->state & State_HasFocus) && showsFocusRing(widget);
            const QRectF shape = QRectF(tab->rect).adjusted(2.5, 0.5, -2.5, -0.5);
            painter->save();
            painter->setRenderHint(QPainter::Antialiasing);
            painter->setPen(ring ? QPen(Theme::accent(), 1.5) : Qt::NoPen);
            painter->setBrush(selected ? QColor(255, 255, 255, 26)
                                  : (tab->state & (State_MouseOver | State_Sunken))
                                  ? QColor(255, 255, 255, 10)
                                  : QColor(Qt::transparent));
            painter->drawRoundedRect(shape, 6, 6);
            constexpr int side = 14; // the symbol at the 12-point text size
            const QString symbol = bar ? bar->tabData(tab->tabIndex).toString() : QString();
            painter->drawPixmap(shape.center() - QPointF(side / 2.0, side / 2.0),
                                Icons::pixmap(symbol,
                                              selected ? Theme::primaryText() : Theme::secondaryText(), side,
                                              painter->device()->devicePixelRatioF()));
            painter->restore();
            return;
        }
        break;
    case CE_ComboBoxLabel:
        if (const auto *combo = qstyleoption_cast<const QStyleOptionComboBox *>(option)) {
            const auto *box = qobject_cast<const QComboBox *>(widget);
            const QRect text = subControlRect(CC_ComboBox, combo, SC_ComboBoxEditField, widget);
            painter->save();
            painter->setPen(box && box->currentIndex() == 0 ? Theme::secondaryText() : Theme::primaryText());
            painter->drawText(
                text, Qt::AlignLeft | Qt::AlignVCenter,
                combo->fontMetrics.elidedText(combo->currentText, Qt::ElideRight, text.width()));
            painter->restore();
            return;
        }
        break;
    case CE_MenuItem:
        if (const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option)) {
            if (item->menuItemType == QStyleOptionMenuItem::Separator) {
                painter->fillRect(item->rect.adjusted(8, 4, -8, -4), QColor(255, 255, 255, 51));
                return;
            }
            const bool selected = item->state & State_Selected;
            if (selected)
                painter->fillRect(item->rect, Theme::accent());
            painter->setPen(selected ? QColor(Qt::white) : Theme::primaryText());
            painter->setFont(item->font);
            painter->drawText(item->rect.adjusted(menuTextLeft, 0, -menuTextRight, 0),
                              Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic, item->text);
            return;
        }
        break;
    default:
        break;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void DarkStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                   QPainter *painter, const QWidget *widget) const
{
    if (control == CC_ComboBox) {
        const bool ring = (option->state & State_HasFocus) && showsFocusRing(widget);
        paintField(painter, option->rect, ring);
        constexpr int chevron = 12;
        painter->drawPixmap(QPointF(option->rect.right() + 1 - 8 - chevron,
                                    option->rect.y() + (option->rect.height() - chevron) / 2.0),
                            Icons::pixmap(QStringLiteral("chevron.up.chevron.down"), Theme::secondaryText(),
                                          chevron, painter->device()->devicePixelRatioF()));
        return;
    }
    if (const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
        control == CC_ScrollBar && bar && bar->orientation == Qt::Vertical) {
        const bool hovered = (bar->state & State_MouseOver) && (bar->activeSubControls & SC_ScrollBarSlider);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(QColor(255, 255, 255, hovered ? 89 : 56));
        painter->drawRoundedRect(subControlRect(control, option, SC_ScrollBarSlider, widget), 3, 3);
        painter->restore();
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect DarkStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option,
                                SubControl subControl, const QWidget *widget) const
{
    if (control == CC_ComboBox && subControl == SC_ComboBoxEditField)
        return option->rect.adjusted(8, 0, -8 - 12 - 6, 0);
    const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
    if (control != CC_ScrollBar || !bar || bar->orientation != Qt::Vertical)
        return QProxyStyle::subControlRect(control, option, subControl, widget);
    // A thin handle, no arrows: 2 points from the top, bottom and right.
    const QRect groove = option->rect.adjusted(0, 2, -2, -2);
    const int range = bar->maximum - bar->minimum;
    const int length = range <= 0
        ? groove.height()
        : qMax(pixelMetric(PM_ScrollBarSliderMin, option, widget),
               int(qint64(groove.height()) * bar->pageStep / (range + bar->pageStep)));
    const int top = groove.top()
        + sliderPositionFromValue(bar->minimum, bar->maximum, bar->sliderPosition, groove.height() - length,
                                  bar->upsideDown);
    switch (subControl) {
    case SC_ScrollBarGroove:
        return groove;
    case SC_ScrollBarSlider:
        return QRect(groove.left(), top, groove.width(), length);
    case SC_ScrollBarSubPage:
        return QRect(groove.left(), groove.top(), groove.width(), top - groove.top());
    case SC_ScrollBarAddPage:
        return QRect(groove.left(), top + length, groove.width(), groove.bottom() + 1 - top - length);
    default:
        return {};
    }
}

QSize DarkStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                                  const QWidget *widget) const
{
    switch (type) {
    case CT_PushButton: {
        const QString kind = kindOf(widget);
        const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
        if (kind.isEmpty() || kind == QLatin1String("icon") || !button)
            break;
        const QFontMetrics fm(widget->font());
        int width = fm.horizontalAdvance(button->text) + 2 * (isTextOnly(kind) ? 2 : 12);
        if (!widget->property("symbol").toString().isEmpty())
            width += fm.height() + iconSpacing;
        return {width + 2, fm.height() + 2 * verticalPadding(widget, kind)};
    }
    case CT_TabBarTab:
        return {30, 26};
    case CT_ComboBox:
        return {120, option->fontMetrics.height() + 12};
    case CT_MenuItem:
        if (const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option)) {
            if (item->menuItemType == QStyleOptionMenuItem::Separator)
                return {size.width(), 9};
            return {QFontMetrics(item->font).horizontalAdvance(item->text) + menuTextLeft + menuTextRight,
                    QFontMetrics(item->font).height() + 8};
        }
        break;
    default:
        break;
    }
    return QProxyStyle::sizeFromContents(type, option, size, widget);
}

int DarkStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    switch (metric) {
    case PM_ScrollBarExtent:
        return 8;
    case PM_ScrollBarSliderMin:
        return 24;
    case PM_MenuPanelWidth:
        return 1;
    case PM_MenuVMargin:
        return 4;
    case PM_MenuHMargin:
        return 0;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int DarkStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                         QStyleHintReturn *returnData) const
{
    // Hovering a menu item selects it, as the desktop's menus do.
    if (hint == SH_Menu_MouseTracking)
        return true;
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}
