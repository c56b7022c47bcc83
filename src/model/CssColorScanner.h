#pragma once

#include "ExchangePalette.h"

#include <QByteArray>

// Finds the colors in a stylesheet or a text, in one pass: every #RGB,
// #RGBA, #RRGGBB and #RRGGBBAA (alpha dropped), rgb()/rgba() and
// hsl()/hsla() in comma or space syntax, named after the custom property
// (--name:) or SCSS variable ($name:) of the declaration that holds them.
// Passes over /* */ and // comments and over selectors, the text before a
// "{" (so "#fab {" is no color). An rgb() or hsl() whose values cannot be
// read is counted as unreadable. Returns why the text is refused (see
// ExchangePalette), or an empty text.
QString scanCssColors(const QByteArray &data, ExchangePalette &palette);
