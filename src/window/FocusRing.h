#pragma once

#include <QRectF>

class QPainter;

namespace brisko {

/// Draws the ring that marks the control with the keyboard focus, just inside `rect`.
void drawFocusRing(QPainter* painter, const QRectF& rect, qreal radius);

}  // namespace brisko
