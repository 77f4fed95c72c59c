#include "DuplicateOutline.h"

#include "DuplicateTreeModel.h"
#include "EntryTable.h"
#include "FocusRing.h"
#include "ImageCheckBox.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "SortHeaderView.h"
#include "Theme.h"

#include <QKeyEvent>
#include <QPainter>

namespace brisko {
namespace {

constexpr int kTagHeight = 18;
constexpr int kLeastName = 64;  // below it a tag would only be in the way

void paintGround(QPainter* painter, const QRect& rect, bool isSelected) {
  if (isSelected) painter->fillRect(rect, themeColor(Theme::Token::accentSoft));
  painter->save();
  painter->setOpacity(0.6);
  painter->setPen(themeColor(Theme::Token::border));
  painter->drawLine(rect.bottomLeft(), rect.bottomRight());
  painter->restore();
}

// A word on a rounded ground at the right end of `area`; what is left of the area remains.
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

class OutlineDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
    return {40, DuplicateOutline::kRowHeight};
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    paintGround(painter, option.rect, (option.state & QStyle::State_Selected) != 0);
    const std::string image = index.data(ImageNameRole).toString().toStdString();
    if (index.column() == DuplicateTreeModel::Checkbox) {
      QRectF area(0, 0, 20, 20);
      area.moveCenter(QRectF(option.rect).center());
      ImageLookup::paint(painter, image, area);
    } else if (index.column() == DuplicateTreeModel::NameColumn) {
      paintName(painter, option.rect, index, image);
    } else {
      painter->setFont(Theme::shared().font(12));
      painter->setPen(themeColor(Theme::Token::textSecondary));
      painter->drawText(option.rect.adjusted(Space::tiny, 0, -Space::large, 0),
                        Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine,
                        index.data().toString());
    }
    painter->restore();
  }

 private:
  static void paintName(QPainter* painter, const QRect& rect, const QModelIndex& index,
                        const std::string& image) {
    const bool isGroup = !index.parent().isValid();
    QRect area = rect.adjusted(Space::tiny, 0, -Space::small, 0);
    ImageLookup::paint(painter, image, QRectF(area.left(), area.center().y() - 8.5, 18, 18));
    area.setLeft(area.left() + 18 + Space::small);
    if (index.data(KeptRole).toBool()) {
      paintTag(painter, area, getLocalizedString("Kept"), Theme::Token::success);
    }
    if (index.data(HardLinkRole).toBool()) {
      paintTag(painter, area, getLocalizedString("Hard link"), Theme::Token::textDimmed);
    }
    painter->setFont(Theme::shared().font(13, isGroup ? QFont::DemiBold : QFont::Normal));
    painter->setPen(themeColor(isGroup ? Theme::Token::text : Theme::Token::textSecondary));
    // Of a path the end tells copies apart.
    const QString text = painter->fontMetrics().elidedText(
        index.data().toString(), isGroup ? Qt::ElideMiddle : Qt::ElideLeft, area.width());
    painter->drawText(area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
  }
};

}  // namespace

DuplicateOutline::DuplicateOutline(QWidget* parent) : QTreeView(parent) {
  setHeader(new SortHeaderView(this));
  setTabOrder(header(), this);
  setItemDelegate(new OutlineDelegate(this));
  setUniformRowHeights(true);
  setTreePosition(DuplicateTreeModel::NameColumn);
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

void DuplicateOutline::setTree(DuplicateTreeModel* tree) {
  setModel(tree);
  // An outline that does not sort by itself takes this away from its header.
  header()->setSectionsClickable(true);
  header()->setStretchLastSection(false);
  header()->setSectionsMovable(false);
  header()->setMinimumSectionSize(48);
  // How long a date is depends on the user's language.
  const QFontMetrics metrics(Theme::shared().font(12));
  SimpleNodeData sample;
  sample.ModificationDate.seconds = 1'797'600'000;
  const int date = metrics.horizontalAdvance(modificationDateText(sample)) + Space::wide;
  const int widths[] = {52, 200, 52, 88, date};
  for (int column = 0; column < DuplicateTreeModel::count; ++column) {
    const bool isName = column == DuplicateTreeModel::NameColumn;
    header()->setSectionResizeMode(column, isName ? QHeaderView::Stretch
                                           : column == DuplicateTreeModel::Checkbox
                                               ? QHeaderView::Fixed
                                               : QHeaderView::Interactive);
    if (!isName) header()->resizeSection(column, widths[column]);
  }
}

ImageCheckBox* DuplicateOutline::selectAllBox() const {
  return static_cast<CheckHeaderView*>(header())->checkBox();
}

void DuplicateOutline::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier) {
    if (currentIndex().isValid()) Q_EMIT toggleRequested(currentIndex());
    return;
  }
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    openOrReveal(currentIndex());
    return;
  }
  QTreeView::keyPressEvent(event);
}

void DuplicateOutline::mousePressEvent(QMouseEvent* event) {
  QTreeView::mousePressEvent(event);
  pressed_ =
      event->button() == Qt::LeftButton ? indexAt(event->position().toPoint()) : QModelIndex();
}

void DuplicateOutline::mouseReleaseEvent(QMouseEvent* event) {
  QTreeView::mouseReleaseEvent(event);
  const QModelIndex released = indexAt(event->position().toPoint());
  const bool isBox = released.isValid() && released == pressed_ &&
                     released.column() == DuplicateTreeModel::Checkbox;
  pressed_ = QModelIndex();
  if (isBox) Q_EMIT toggleRequested(released);
}

// The second click of two on a box is a click like the first; elsewhere it opens a group.
void DuplicateOutline::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  if (index.isValid() && index.column() == DuplicateTreeModel::Checkbox) {
    mousePressEvent(event);
  } else if (event->button() == Qt::LeftButton) {
    openOrReveal(index);
  }
}

void DuplicateOutline::openOrReveal(const QModelIndex& index) {
  if (!index.isValid()) return;
  const QModelIndex row = index.siblingAtColumn(0);
  if (row.parent().isValid()) {
    Q_EMIT revealRequested(row);
  } else {
    setExpanded(row, !isExpanded(row));
  }
}

void DuplicateOutline::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  Q_EMIT currentRowChanged(current);
}

void DuplicateOutline::drawBranches(QPainter* painter, const QRect& rect,
                                    const QModelIndex& index) const {
  paintGround(painter, rect, selectionModel()->isSelected(index));
  if (index.parent().isValid()) return;
  painter->save();
  painter->translate(QRectF(rect).center());
  if (isExpanded(index)) painter->rotate(90);
  ImageLookup::paint(painter, "ic_chevron", QRectF(-7, -7, 14, 14),
                     themeColor(Theme::Token::textDimmed));
  painter->restore();
}

void DuplicateOutline::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  if (!hasFocus() || !currentIndex().isValid()) return;
  QPainter painter(viewport());
  QRect row = visualRect(currentIndex());
  row.setLeft(0);
  row.setRight(viewport()->width() - 1);
  drawFocusRing(&painter, row, 6);
}

}  // namespace brisko
