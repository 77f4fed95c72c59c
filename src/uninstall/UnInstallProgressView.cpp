#include "UnInstallProgressView.h"

#include "LocalizedString.h"
#include "Theme.h"

#include <QPainter>

#include <algorithm>

namespace brisko {

UnInstallProgressView::UnInstallProgressView(QWidget* parent) : QWidget(parent) {
  setAccessibleName(getLocalizedString("Removal progress"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void UnInstallProgressView::setValue(float percentage) {
  value_ = percentage;
  setAccessibleDescription(QStringLiteral("%1 %").arg(static_cast<int>(percentage)));
  update();
}

double UnInstallProgressView::filledWidth() const {
  return std::min<double>(width(), width() * static_cast<double>(value_) / 100);
}

void UnInstallProgressView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const double radius = height() / 2.0;
  painter.setBrush(themeColor(Theme::Token::track));
  painter.drawRoundedRect(QRectF(rect()), radius, radius);
  if (filledWidth() <= 0) return;
  painter.setBrush(themeColor(Theme::Token::accentFill));
  painter.drawRoundedRect(QRectF(0, 0, filledWidth(), height()), radius, radius);
}

}  // namespace brisko
