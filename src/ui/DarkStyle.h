#pragma once

#include <QPointer>
#include <QProxyStyle>

class QStyleOptionButton;

// The window's dark look for Qt's own controls, drawn the same whatever the
// desktop theme: push buttons in four kinds and icon-only ones, the tab
// bar, rounded text fields and the palette menu, thin scroll bars, dark
// context menus. A button's look comes from its properties (see Theme's
// factories): "kind" (prominent, bordered, link, plain, icon), "symbol",
// "symbolSize", "textColor", "hoverColor", "verticalPadding".
//
// A control shows its focus ring only while its focus came from the
// keyboard (Tab, a shortcut, a key pressed in it); a click shows none. Every
// push button is also pressed by Return and Enter, as by Space.
class DarkStyle : public QProxyStyle
{
    Q_OBJECT

public:
    DarkStyle();

    // Whether the widget has focus that shows a ring.
    static bool showsFocusRing(const QWidget *widget);

    void polish(QWidget *widget) override;
    void unpolish(QWidget *widget) override;
    using QProxyStyle::polish;
    using QProxyStyle::unpolish;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl subControl,
                         const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void drawButton(const QStyleOptionButton &option, QPainter *painter, const QWidget *widget) const;
    void drawIconButton(const QStyleOptionButton &option, QPainter *painter, const QWidget *widget) const;

    static inline QPointer<QWidget> s_ringed; // the widget whose focus came from the keyboard
};
