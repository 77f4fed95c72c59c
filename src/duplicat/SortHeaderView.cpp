#include "SortHeaderView.h"

#include "FocusRing.h"

#include <QKeyEvent>

namespace brisko {

SortHeaderView::SortHeaderView(QWidget* parent) : CheckHeaderView(parent) {
  setFocusPolicy(Qt::TabFocus);
}

bool SortHeaderView::hasTitle(int section) const {
  return section >= 0 && section < count() &&
         !model()->headerData(section, Qt::Horizontal).toString().isEmpty();
}

void SortHeaderView::step(int by) {
  int section = current_ + by;
  while (section >= 0 && section < count() && !hasTitle(section))
    section += by;
  if (!hasTitle(section)) return;
  current_ = section;
  viewport()->update();
}

void SortHeaderView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left:
      return step(-1);
    case Qt::Key_Right:
      return step(1);
    case Qt::Key_Down:
      return parentWidget()->setFocus(Qt::OtherFocusReason);
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (hasTitle(current_)) Q_EMIT sectionClicked(current_);
      return;
    default:
      event->ignore();
  }
}

void SortHeaderView::focusInEvent(QFocusEvent* event) {
  CheckHeaderView::focusInEvent(event);
  if (!hasTitle(current_)) step(1);
  viewport()->update();
}

void SortHeaderView::focusOutEvent(QFocusEvent* event) {
  CheckHeaderView::focusOutEvent(event);
  viewport()->update();
}

void SortHeaderView::paintSection(QPainter* painter, const QRect& rect, int section) const {
  CheckHeaderView::paintSection(painter, rect, section);
  if (hasFocus() && section == current_) drawFocusRing(painter, rect.adjusted(2, 4, -2, -5), 6);
}

}  // namespace brisko
