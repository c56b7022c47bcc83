#pragma once

#include <QtGlobal>

class QPainter;
class QRectF;

// The look shared by the palette cards and color rows: a translucent fill,
// a hairline border running from translucent white to clear, and an accent
// ring while the card has keyboard focus.
namespace CardPainting {

constexpr qreal cornerRadius = 10;

void paintCard(QPainter &painter, const QRectF &rect, bool hovered, bool focused);

} // namespace CardPainting
