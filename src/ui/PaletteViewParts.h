#pragma once

#include <QList>

class QScrollArea;
class QString;
class QWidget;

// Pieces shared by the palette list and the palette detail.
namespace PaletteViewParts {

// The dimmed "swatchpalette" symbol over a secondary caption, centred;
// `extra` (a button) goes below when given.
QWidget *makeEmptyState(const QString &text, QWidget *extra, QWidget *parent);

// A frameless, transparent, vertically scrolling column of rows.
QScrollArea *makeRowList(const QList<QWidget *> &rows, int spacing, QWidget *parent);

} // namespace PaletteViewParts
