#include "FocusRing.h"

#include "Theme.h"

#include <QPainter>

namespace brisko {

void drawFocusRing(QPainter* painter, const QRectF& rect, qreal radius) {
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setBrush(Qt::NoBrush);
  painter->setPen(QPen(themeColor(Theme::Token::accent), 2));
  painter->drawRoundedRect(rect.adjusted(1, 1, -1, -1), radius, radius);
  painter->restore();
}

}  // namespace brisko
