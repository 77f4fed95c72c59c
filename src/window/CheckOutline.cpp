#include "CheckOutline.h"

#include "EntryTable.h"
#include "FocusRing.h"
#include "ImageLookup.h"

#include <QKeyEvent>
#include <QPainter>

namespace brisko {
namespace {

constexpr int kTagHeight = 18;
constexpr int kLeastName = 64;  // below it a tag would only be in the way

}  // namespace

void paintRowGround(QPainter* painter, const QRect& rect, bool isSelected) {
  if (isSelected) painter->fillRect(rect, themeColor(Theme::Token::accentSoft));
  painter->save();
  painter->setOpacity(0.6);
  painter->setPen(themeColor(Theme::Token::border));
  painter->drawLine(rect.bottomLeft(), rect.bottomRight());
  painter->restore();
}

void paintTag(QPainter* painter, QRect& area, const QString& word, Theme::Token ink) {
  painter->setFont(Theme::shared().font(11, QFont::DemiBold));
  const int width = painter->fontMetrics().horizontalAdvance(word) + 14;
  if (width > area.width() - kLeastName) return;
  QRect tag(area.right() - width + 1, area.center().y() - kTagHeight / 2, width, kTagHeight);
  QColor ground = themeColor(ink);
  ground.setAlphaF(0.12F);
  painter->setPen(Qt::NoPen);
  painter->setBrush(ground);
  painter->drawRoundedRect(tag, kTagHeight / 2.0, kTagHeight / 2.0);
  painter->setPen(themeColor(ink));
  painter->drawText(tag, Qt::AlignCenter, word);
  area.setRight(tag.left() - Space::small);
}

void paintBox(QPainter* painter, const QRect& rect, const QModelIndex& index) {
  QRectF area(0, 0, 20, 20);
  area.moveCenter(QRectF(rect).center());
  ImageLookup::paint(painter, index.data(ImageNameRole).toString().toStdString(), area);
}

CheckOutline::CheckOutline(QWidget* parent) : QTreeView(parent) {
  setUniformRowHeights(true);
  setTreePosition(1);
  setIndentation(18);
  setAnimated(false);
  setFrameShape(QFrame::NoFrame);
  setExpandsOnDoubleClick(false);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setAllColumnsShowFocus(true);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void CheckOutline::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier) {
    if (currentIndex().isValid()) Q_EMIT toggleRequested(currentIndex());
    return;
  }
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (currentIndex().isValid()) openRow(currentIndex().siblingAtColumn(0));
    return;
  }
  QTreeView::keyPressEvent(event);
}

void CheckOutline::openRow(const QModelIndex& row) {
  setExpanded(row, !isExpanded(row));
}

void CheckOutline::mousePressEvent(QMouseEvent* event) {
  QTreeView::mousePressEvent(event);
  pressed_ =
      event->button() == Qt::LeftButton ? indexAt(event->position().toPoint()) : QModelIndex();
}

void CheckOutline::mouseReleaseEvent(QMouseEvent* event) {
  QTreeView::mouseReleaseEvent(event);
  const QModelIndex released = indexAt(event->position().toPoint());
  const bool isClick = released.isValid() && released == pressed_ && isBox(released);
  pressed_ = QModelIndex();
  if (isClick) Q_EMIT toggleRequested(released);
}

// The second click of two on a box is a click like the first; elsewhere it opens a group.
void CheckOutline::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  if (index.isValid() && isBox(index)) {
    mousePressEvent(event);
  } else if (index.isValid() && event->button() == Qt::LeftButton) {
    openRow(index.siblingAtColumn(0));
  }
}

void CheckOutline::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  Q_EMIT currentRowChanged(current);
}

void CheckOutline::drawBranches(QPainter* painter, const QRect& rect,
                                const QModelIndex& index) const {
  paintRowGround(painter, rect, selectionModel()->isSelected(index));
  if (!model()->hasChildren(index)) return;
  painter->save();
  // At the row's own step of the indentation, whatever is above it.
  painter->translate(QPointF(rect.right() + 1 - indentation() / 2.0, QRectF(rect).center().y()));
  if (isExpanded(index)) painter->rotate(90);
  ImageLookup::paint(painter, "ic_chevron", QRectF(-7, -7, 14, 14),
                     themeColor(Theme::Token::textDimmed));
  painter->restore();
}

void CheckOutline::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  if (!hasFocus() || !currentIndex().isValid()) return;
  QPainter painter(viewport());
  QRect row = visualRect(currentIndex());
  row.setLeft(0);
  row.setRight(viewport()->width() - 1);
  drawFocusRing(&painter, row, 6);
}

}  // namespace brisko
