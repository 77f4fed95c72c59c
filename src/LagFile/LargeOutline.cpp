#include "LargeOutline.h"

#include "EntryTable.h"
#include "FocusRing.h"
#include "ImageCheckBox.h"
#include "ImageLookup.h"
#include "LargeFileKinds.h"
#include "LargeTreeModel.h"
#include "LocalizedString.h"
#include "Theme.h"

#include <QKeyEvent>
#include <QPainter>

namespace brisko {
namespace {

constexpr int kIcon = 18;

void paintGround(QPainter* painter, const QRect& rect, bool isSelected) {
  if (isSelected) painter->fillRect(rect, themeColor(Theme::Token::accentSoft));
  painter->save();
  painter->setOpacity(0.6);
  painter->setPen(themeColor(Theme::Token::border));
  painter->drawLine(rect.bottomLeft(), rect.bottomRight());
  painter->restore();
}

class LargeOutlineDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
    return {40, LargeOutline::kRowHeight};
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    paintGround(painter, option.rect, (option.state & QStyle::State_Selected) != 0);
    if (index.column() == LargeTreeModel::Checkbox) {
      paintBox(painter, option.rect, index);
    } else if (index.column() == LargeTreeModel::Name) {
      paintName(painter, option.rect, index);
    } else {
      paintText(painter, option.rect, index);
    }
    painter->restore();
  }

 private:
  static void paintBox(QPainter* painter, const QRect& rect, const QModelIndex& index) {
    const std::string image = index.data(ImageNameRole).toString().toStdString();
    if (image.empty() || index.data(CutRole).toBool()) return;
    const bool isLocked = !index.data(LockRole).toString().isEmpty();
    QRectF area(0, 0, isLocked ? 17 : 20, isLocked ? 17 : 20);
    area.moveCenter(QRectF(rect).center());
    if (isLocked) {
      ImageLookup::paint(painter, "ic_lock", area, themeColor(Theme::Token::textDimmed));
    } else {
      ImageLookup::paint(painter, image, area);
    }
  }

  static void paintName(QPainter* painter, const QRect& rect, const QModelIndex& index) {
    QRect area = rect.adjusted(Space::tiny, 0, -Space::small, 0);
    const bool isMore = index.data(MoreRole).toBool();
    const bool isUnread = !index.data(ReasonRole).toString().isEmpty();
    const std::string image = isMore     ? "ic_menu"
                              : isUnread ? "ic_warning"
                                         : index.data(ImageNameRole).toString().toStdString();
    ImageLookup::paint(painter, image, QRectF(area.left(), area.center().y() - 8.5, kIcon, kIcon));
    area.setLeft(area.left() + kIcon + Space::small);
    painter->setFont(Theme::shared().font(13));
    painter->setPen(themeColor(isMore ? Theme::Token::accent : Theme::Token::text));
    painter->drawText(
        area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
        painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideMiddle, area.width()));
  }

  static void paintText(QPainter* painter, const QRect& rect, const QModelIndex& index) {
    const bool isSize = index.column() == LargeTreeModel::Size;
    const bool isMore = index.data(MoreRole).toBool();
    painter->setFont(Theme::shared().font(12, isSize ? QFont::DemiBold : QFont::Normal));
    painter->setPen(isSize && !isMore ? index.data(SizeColorRole).value<QColor>()
                                      : themeColor(Theme::Token::textDimmed));
    const QRect area = rect.adjusted(Space::tiny, 0, -Space::medium, 0);
    // Of a path the end tells entries apart.
    const bool isPath = index.column() == LargeTreeModel::Path;
    painter->drawText(
        area, (isSize ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter | Qt::TextSingleLine,
        painter->fontMetrics().elidedText(index.data().toString(),
                                          isPath ? Qt::ElideLeft : Qt::ElideRight, area.width()));
  }
};

}  // namespace

LargeOutline::LargeOutline(QWidget* parent) : QTreeView(parent) {
  setHeader(new CheckHeaderView(this));
  setItemDelegate(new LargeOutlineDelegate(this));
  setUniformRowHeights(true);
  setTreePosition(LargeTreeModel::Name);
  setIndentation(16);
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

void LargeOutline::setTree(LargeTreeModel* tree) {
  setModel(tree);
  // An outline that does not sort by itself takes this away from its header.
  header()->setSectionsClickable(true);
  header()->setStretchLastSection(false);
  header()->setSectionsMovable(false);
  header()->setMinimumSectionSize(44);
  // How long a date is depends on the user's language.
  const QFontMetrics metrics(Theme::shared().font(12));
  FileNode sample;
  sample.isLooked = true;
  sample.modificationSeconds = 1'798'700'000;
  const int date = metrics.horizontalAdvance(modificationDateText(sample)) + Space::wide;
  const int widths[] = {44, 160, 92, date, 64};
  for (int column = 0; column < LargeTreeModel::count; ++column) {
    const bool isName = column == LargeTreeModel::Name;
    header()->setSectionResizeMode(column, isName ? QHeaderView::Stretch
                                           : column == LargeTreeModel::Checkbox
                                               ? QHeaderView::Fixed
                                               : QHeaderView::Interactive);
    if (!isName) header()->resizeSection(column, widths[column]);
  }
}

ImageCheckBox* LargeOutline::selectAllBox() const {
  return static_cast<CheckHeaderView*>(header())->checkBox();
}

void LargeOutline::keyPressEvent(QKeyEvent* event) {
  const QModelIndex at = currentIndex();
  const bool isSpace = event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier;
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (at.isValid() && at.data(MoreRole).toBool() && (isSpace || isEnter)) {
    Q_EMIT moreRequested(at);
  } else if (isSpace) {
    if (at.isValid()) Q_EMIT toggleRequested(at);
  } else {
    QTreeView::keyPressEvent(event);
  }
}

void LargeOutline::mousePressEvent(QMouseEvent* event) {
  QTreeView::mousePressEvent(event);
  pressed_ =
      event->button() == Qt::LeftButton ? indexAt(event->position().toPoint()) : QModelIndex();
}

void LargeOutline::mouseReleaseEvent(QMouseEvent* event) {
  QTreeView::mouseReleaseEvent(event);
  const QModelIndex released = indexAt(event->position().toPoint());
  const bool isSame = released.isValid() && released == pressed_;
  pressed_ = QModelIndex();
  if (!isSame) return;
  if (released.data(MoreRole).toBool()) {
    Q_EMIT moreRequested(released);
  } else if (released.column() == LargeTreeModel::Checkbox) {
    Q_EMIT toggleRequested(released);
  }
}

// The second click of two on a box is a click like the first; elsewhere it opens a folder.
void LargeOutline::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  if (index.isValid() && index.column() == LargeTreeModel::Checkbox) {
    mousePressEvent(event);
  } else if (index.isValid() && event->button() == Qt::LeftButton) {
    const QModelIndex row = index.siblingAtColumn(0);
    setExpanded(row, !isExpanded(row));
  }
}

void LargeOutline::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  Q_EMIT currentRowChanged(current);
}

void LargeOutline::drawBranches(QPainter* painter, const QRect& rect,
                                const QModelIndex& index) const {
  paintGround(painter, rect, selectionModel()->isSelected(index));
  if (!model()->hasChildren(index)) return;
  painter->save();
  painter->translate(QPointF(rect.right() - indentation() / 2.0 + 1, QRectF(rect).center().y()));
  if (isExpanded(index)) painter->rotate(90);
  ImageLookup::paint(painter, "ic_chevron", QRectF(-7, -7, 14, 14),
                     themeColor(Theme::Token::textDimmed));
  painter->restore();
}

void LargeOutline::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  if (!hasFocus() || !currentIndex().isValid()) return;
  QPainter painter(viewport());
  QRect row = visualRect(currentIndex());
  row.setLeft(0);
  row.setRight(viewport()->width() - 1);
  drawFocusRing(&painter, row, 6);
}

}  // namespace brisko
