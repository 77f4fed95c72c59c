#include "UsageBar.h"

#include "LocalizedString.h"
#include "Theme.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace brisko {

UsageBar::UsageBar(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void UsageBar::setFraction(double fraction) {
  fraction_ = std::isfinite(fraction) ? std::clamp(fraction, 0.0, 1.0) : 0;
  setAccessibleDescription(filledIn(getLocalizedString("%@ percent used"),
                                    QString::number(std::lround(fraction_ * 100))));
  update();
}

void UsageBar::setWarnsWhenFull(bool warns) {
  warnsWhenFull_ = warns;
  update();
}

void UsageBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const qreal radius = height() / 2.0;
  painter.setBrush(themeColor(Theme::Token::track));
  painter.drawRoundedRect(rect(), radius, radius);
  if (fraction_ <= 0) return;
  const bool isWarning = warnsWhenFull_ && fraction_ >= 0.9;
  painter.setBrush(themeColor(isWarning ? Theme::Token::warningFill : Theme::Token::accentFill));
  const qreal length = std::max<qreal>(height(), width() * fraction_);
  painter.drawRoundedRect(QRectF(0, 0, length, height()), radius, radius);
}

}  // namespace brisko
