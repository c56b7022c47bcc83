#pragma once

#include <QColor>
#include <QFont>

class QLabel;
class QLineEdit;
class QPainter;
class QPushButton;
class QRectF;
class QWidget;

// The window's dark look, whatever the desktop theme: colors, fonts, the
// translucent "material" cards, and the controls made in it (their drawing
// is DarkStyle's). Drawn on an opaque dark base so that the window looks
// the same with and without a compositor.
namespace Theme {

QColor windowBase();    // opaque base under every layer
QColor primaryText();   // labels
QColor secondaryText(); // captions, dimmed icons
QColor material();      // the ultra-thin translucent fill of cards and fields
QColor accent();        // prominent buttons, focus rings
QColor withAlpha(QColor color, qreal alpha);

// The style, the dark palette and dark tooltips, for the whole program.
void install();

// A font at a size in logical pixels (the layout's points).
QFont font(int pixelSize, QFont::Weight weight = QFont::Normal);
QFont monospaceFont(int pixelSize, QFont::Weight weight = QFont::Normal);

// A label in the given font and text color.
QLabel *makeLabel(const QString &text, const QFont &font, const QColor &color, QWidget *parent);

// Push buttons: prominent (accent fill), bordered (translucent fill), link
// (accent text) or plain (text only), with an optional symbol before the
// text; and small icon-only buttons, whose name (tooltip and accessible
// name) screen readers speak.
enum class ButtonKind { Prominent, Bordered, Link, Plain };
QPushButton *makeButton(ButtonKind kind, const QString &text, QWidget *parent, const QString &symbol = {});
QPushButton *makeIconButton(const QString &symbol, const QString &name, int symbolSize, int buttonSize,
                            QWidget *parent);
void setSymbol(QPushButton *button, const QString &symbol);

// A rounded text field on the translucent card fill.
QLineEdit *makeField(int horizontalPadding, QWidget *parent);

// A rounded card: fill, then a hairline stroke of the given width.
void paintRoundedCard(QPainter &painter, const QRectF &rect, qreal radius, const QColor &fill,
                      const QColor &stroke, qreal strokeWidth);

// The palette cards' look: a translucent fill (stronger while hovered), a
// hairline running from translucent white to clear, or the accent ring
// while the card shows keyboard focus.
void paintCard(QPainter &painter, const QRectF &rect, bool hovered, bool focused);

// A sheet's or prompt's background: slightly lighter than the window, with
// a hairline edge so it stands out even where no window manager frames it.
void paintSheetBackground(QWidget *sheet);

// Puts a sheet or prompt over its parent window: centred across, just
// below the tab bar, and on the screen even when the window is at its edge.
void placeOverParent(QWidget *dialog);

// A one-pixel horizontal divider: the separator color at the given opacity.
QWidget *makeDivider(qreal opacity, QWidget *parent = nullptr);

} // namespace Theme
