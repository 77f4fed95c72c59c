#include "SwitchButton.h"

#include "FocusRing.h"
#include "Theme.h"

#include <QPainter>

namespace brisko {
namespace {

constexpr int kMovement = 140;  // milliseconds
constexpr qreal kMargin = 3;

}  // namespace

SwitchButton::SwitchButton(QWidget* parent) : QAbstractButton(parent) {
  setCheckable(true);
  setCursor(Qt::PointingHandCursor);
  setFixedSize(sizeHint());
  movement_.setDuration(kMovement);
  movement_.setEasingCurve(QEasingCurve::OutCubic);
  connect(&movement_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    place_ = value.toReal();
    update();
  });
}

void SwitchButton::setOn(bool isOn) {
  setChecked(isOn);
  const qreal end = isOn ? 1 : 0;
  movement_.stop();
  if (!isVisible() || place_ == end) {
    place_ = end;
    update();
    return;
  }
  movement_.setStartValue(place_);
  movement_.setEndValue(end);
  movement_.start();
}

void SwitchButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(isEnabled() ? 1 : 0.45);
  const QRectF track = QRectF(rect()).adjusted(1, 1, -1, -1);
  const qreal radius = track.height() / 2;
  painter.setPen(Qt::NoPen);
  painter.setBrush(themeColor(Theme::Token::control));
  painter.drawRoundedRect(track, radius, radius);
  painter.setOpacity(painter.opacity() * place_);
  painter.setBrush(themeColor(Theme::Token::accentFill));
  painter.drawRoundedRect(track, radius, radius);
  painter.setOpacity(isEnabled() ? 1 : 0.7);
  const qreal side = track.height() - 2 * kMargin;
  const qreal left = track.left() + kMargin + place_ * (track.width() - 2 * kMargin - side);
  painter.setBrush(themeColor(Theme::Token::onAccent));
  painter.drawEllipse(QRectF(left, track.top() + kMargin, side, side));
  painter.setOpacity(1);
  if (hasFocus()) drawFocusRing(&painter, rect(), 12);
}

}  // namespace brisko
