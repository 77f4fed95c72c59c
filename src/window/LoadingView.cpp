#include "LoadingView.h"

#include "LocalizedString.h"
#include "Theme.h"

#include <QPainter>
#include <QTimerEvent>

#include <algorithm>

namespace brisko {

LoadingView::LoadingView(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAccessibleName(getLocalizedString("Working"));
}

void LoadingView::showEvent(QShowEvent*) {
  timer_.start(40, this);
}

void LoadingView::hideEvent(QHideEvent*) {
  timer_.stop();
}

void LoadingView::timerEvent(QTimerEvent* event) {
  if (event->timerId() != timer_.timerId()) {
    QWidget::timerEvent(event);
    return;
  }
  angle_ = (angle_ + 16) % 360;
  update();
}

void LoadingView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const qreal side = std::min({width(), height(), 20}) - 4;
  QRectF ring(0, 0, side, side);
  ring.moveCenter(QRectF(rect()).center());
  painter.setPen(QPen(themeColor(Theme::Token::track), 2.25));
  painter.drawEllipse(ring);
  painter.setPen(QPen(themeColor(Theme::Token::accent), 2.25, Qt::SolidLine, Qt::RoundCap));
  painter.drawArc(ring, (90 - angle_) * 16, -100 * 16);
}

}  // namespace brisko
