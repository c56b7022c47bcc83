#pragma once

#include <QColor>
#include <QFont>

class QAbstractScrollArea;
class QLabel;
class QMenu;
class QPainter;
class QRectF;
class QWidget;

// The window's dark look, whatever the desktop theme: colors, fonts and the
// translucent "material" cards, drawn on an opaque dark base so that the
// window looks the same with and without a compositor.
namespace Theme {

QColor windowBase();    // opaque base under every layer
QColor primaryText();   // labels
QColor secondaryText(); // captions, dimmed icons
QColor material();      // the ultra-thin translucent fill of cards and fields
QColor accent();        // prominent buttons, focus rings
QColor withAlpha(QColor color, qreal alpha);

// A font at a size in logical pixels (the layout's points).
QFont font(int pixelSize, QFont::Weight weight = QFont::Normal);
QFont monospaceFont(int pixelSize, QFont::Weight weight = QFont::Normal);

// A label in the given font and text color.
QLabel *makeLabel(const QString &text, const QFont &font, const QColor &color, QWidget *parent);

// A rounded card: fill, then a hairline stroke of the given width.
void paintRoundedCard(QPainter &painter, const QRectF &rect, qreal radius, const QColor &fill,
                      const QColor &stroke, qreal strokeWidth);

// The palette cards' look: a translucent fill (stronger while hovered), a
// hairline running from translucent white to clear, or the accent ring
// while the card shows keyboard focus.
void paintCard(QPainter &painter, const QRectF &rect, bool hovered, bool focused);

// Whether focus that arrived for this reason shows a ring: keyboard moves
// do, a click or the window becoming active does not.
bool showsFocusRing(Qt::FocusReason reason);

// A thin, dark scroll bar for a scroll area on the window's background.
void styleScrollBars(QAbstractScrollArea *area);

// A sheet's or prompt's background: slightly lighter than the window, with
// a hairline edge so it stands out even where no window manager frames it.
void paintSheetBackground(QWidget *sheet);

// Puts a sheet or prompt over its parent window: centred across, just
// below the tab bar, and on the screen even when the window is at its edge.
void placeOverParent(QWidget *dialog);

// A one-pixel horizontal divider: the separator color at the given opacity.
QWidget *makeDivider(qreal opacity, QWidget *parent = nullptr);

// Applies the dark palette to a top-level widget (the window, a dialog) so
// that standard controls inside read well on it.
void applyDarkPalette(QWidget *widget);

// A context menu in the window's look. A popup is a window of its own and
// does not inherit the window's palette, so each menu gets it here, with a
// divider that stays visible on the dark background.
void styleMenu(QMenu *menu);

// Tooltips, which are windows of their own too, in the same dark look.
void styleToolTips();

} // namespace Theme
