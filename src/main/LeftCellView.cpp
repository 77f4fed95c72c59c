#include "LeftCellView.h"

#include "FocusRing.h"
#include "LeftCellViewCtr.h"
#include "Theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace brisko {
namespace {

constexpr qreal kPillRadius = 10;

QRect pill(const QWidget* cell) {
  return cell->rect().adjusted(Space::medium, 2, -Space::medium, -2);
}

}  // namespace

LeftCellView::LeftCellView(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::TabFocus);
  setCheckable(true);
  // A press by an assistive tool arrives as a click.
  connect(this, &QAbstractButton::clicked, this, [this] {
    if (delegate != nullptr) delegate->mouseDown(nullptr);
  });
}

void LeftCellView::mousePressEvent(QMouseEvent* event) {
  if (delegate != nullptr && event->button() == Qt::LeftButton) delegate->mouseDown(event);
}

void LeftCellView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (delegate != nullptr) delegate->mouseDown(nullptr);
      return;
    case Qt::Key_Up:
      Q_EMIT moveRequested(-1);
      return;
    case Qt::Key_Down:
      Q_EMIT moveRequested(1);
      return;
    default:
      event->ignore();
  }
}

void LeftCellView::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
}

void LeftCellView::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
}

void LeftCellView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (underMouse() && !isChecked()) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(themeColor(Theme::Token::hover));
    painter.drawRoundedRect(pill(this), kPillRadius, kPillRadius);
  }
  if (hasFocus()) drawFocusRing(&painter, pill(this).adjusted(-2, -2, 2, 2), kPillRadius + 1);
}

void SelectBgImageView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(themeColor(Theme::Token::accentSoft));
  painter.drawRoundedRect(rect(), kPillRadius, kPillRadius);
}

}  // namespace brisko
