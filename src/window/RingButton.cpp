#include "RingButton.h"

#include "Theme.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace brisko {
namespace {

constexpr qreal kRingWidth = 6;
constexpr qreal kRingGap = 5;

}  // namespace

RingButton::RingButton(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::PointingHandCursor);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  movement_.setDuration(240);
  movement_.setEasingCurve(QEasingCurve::OutCubic);
  connect(&movement_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    shown_ = value.toDouble();
    update();
  });
}

void RingButton::setPercentage(double percentage) {
  percentage_ = std::clamp(percentage, 0.0, 1.0);
  movement_.stop();
  if (!isVisible() || percentage_ < shown_) {
    // Only progress is animated: a ring that runs backwards would look like work undone.
    shown_ = percentage_;
    update();
  } else {
    movement_.setStartValue(shown_);
    movement_.setEndValue(percentage_);
    movement_.start();
  }
  describe();
}

void RingButton::finishMovement() {
  movement_.stop();
  shown_ = percentage_;
  update();
}

void RingButton::setLook(Look look) {
  look_ = look;
  describe();
  update();
}

void RingButton::setDetail(const QString& detail) {
  detail_ = detail;
  describe();
  update();
}

void RingButton::describe() {
  QString description = detail_;
  if (look_ == Look::working) {
    description += QStringLiteral(" %1 %").arg(std::lround(percentage_ * 100));
  }
  setAccessibleDescription(description.trimmed());
}

QRectF RingButton::disc() const {
  const qreal side = std::min(width(), height());
  QRectF disc(0, 0, side, side);
  disc.moveCenter(QRectF(rect()).center());
  const qreal inset = kRingWidth + kRingGap;
  return disc.adjusted(inset, inset, -inset, -inset);
}

bool RingButton::hitButton(const QPoint& position) const {
  const QPointF offset = position - disc().center();
  return std::hypot(offset.x(), offset.y()) <= disc().width() / 2 + kRingGap + kRingWidth;
}

void RingButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
    return;
  }
  QAbstractButton::keyPressEvent(event);
}

void RingButton::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
}

void RingButton::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
}

void RingButton::changeEvent(QEvent* event) {
  if (event->type() == QEvent::EnabledChange) {
    setCursor(isEnabled() ? Qt::PointingHandCursor : Qt::ArrowCursor);
  }
  QAbstractButton::changeEvent(event);
}

void RingButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paintRing(&painter);
  paintDisc(&painter);
  paintText(&painter);
}

void RingButton::paintRing(QPainter* painter) const {
  const qreal out = kRingGap + kRingWidth / 2;
  const QRectF ring = disc().adjusted(-out, -out, out, out);
  painter->setBrush(Qt::NoBrush);
  if (look_ == Look::working) {
    painter->setPen(QPen(themeColor(Theme::Token::track), kRingWidth));
    painter->drawEllipse(ring);
    if (shown_ > 0) {
      painter->setPen(
          QPen(themeColor(Theme::Token::accentFill), kRingWidth, Qt::SolidLine, Qt::RoundCap));
      painter->drawArc(ring, 90 * 16, static_cast<int>(std::lround(-shown_ * 360 * 16)));
    }
  } else if (isEnabled()) {
    painter->setPen(QPen(themeColor(Theme::Token::accentSoft), kRingWidth));
    painter->drawEllipse(ring);
  }
  if (hasFocus()) {
    // Round the outside of the ring, and its own width away from the widget's edge.
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(themeColor(Theme::Token::accent), 2));
    painter->drawEllipse(ring.adjusted(-2, -2, 2, 2));
  }
}

void RingButton::paintDisc(QPainter* painter) const {
  painter->setPen(Qt::NoPen);
  if (look_ == Look::working || !isEnabled()) {
    const bool lively = isEnabled() && (underMouse() || isDown());
    painter->setBrush(themeColor(lively                   ? Theme::Token::hover
                                 : look_ == Look::working ? Theme::Token::card
                                                          : Theme::Token::track));
    painter->drawEllipse(disc());
    return;
  }
  const QColor base = themeColor(isDown()       ? Theme::Token::accentPressed
                                 : underMouse() ? Theme::Token::accentHover
                                                : Theme::Token::accentFill);
  QLinearGradient ground(disc().topLeft(), disc().bottomRight());
  ground.setColorAt(0, base.lighter(108));
  ground.setColorAt(1, base);
  painter->setBrush(ground);
  painter->drawEllipse(disc());
}

void RingButton::paintText(QPainter* painter) const {
  const bool onFill = look_ == Look::filled && isEnabled();
  const QColor ink = themeColor(onFill        ? Theme::Token::onAccent
                                : isEnabled() ? Theme::Token::accent
                                              : Theme::Token::textDimmed);
  painter->setPen(ink);
  const QFont wordFont = Theme::shared().font(20, QFont::DemiBold);
  const QFont smallFont = Theme::shared().font(11, QFont::Medium);
  QString small = detail_;
  if (small.isEmpty() && look_ == Look::working && percentage_ > 0) {
    small = QStringLiteral("%1 %").arg(std::lround(shown_ * 100));
  }
  const QRectF area = disc();
  painter->setFont(wordFont);
  if (small.isEmpty()) {
    painter->drawText(area, Qt::AlignCenter, text());
    return;
  }
  painter->drawText(area.adjusted(0, 0, 0, -18), Qt::AlignCenter, text());
  painter->setFont(smallFont);
  painter->drawText(QRectF(area.left() + 10, area.center().y() + 6, area.width() - 20, 32),
                    Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, small);
}

}  // namespace brisko
