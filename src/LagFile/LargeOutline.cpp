#include "LargeOutline.h"

#include "EntryTable.h"
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
constexpr int kLock = 17;

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
    paintRowGround(painter, option.rect, (option.state & QStyle::State_Selected) != 0);
    if (index.column() == LargeTreeModel::Checkbox) {
      paintBoxOrLock(painter, option.rect, index);
    } else if (index.column() == LargeTreeModel::Name) {
      paintName(painter, option.rect, index);
    } else {
      paintText(painter, option.rect, index);
    }
    painter->restore();
  }

 private:
  static void paintBoxOrLock(QPainter* painter, const QRect& rect, const QModelIndex& index) {
    if (index.data(MoreRole).toBool() || index.data(CutRole).toBool()) return;
    if (index.data(LockRole).toString().isEmpty()) return paintBox(painter, rect, index);
    QRectF area(0, 0, kLock, kLock);
    area.moveCenter(QRectF(rect).center());
    ImageLookup::paint(painter, "ic_lock", area, themeColor(Theme::Token::textDimmed));
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

LargeOutline::LargeOutline(QWidget* parent) : CheckOutline(parent) {
  setHeader(new CheckHeaderView(this));
  setItemDelegate(new LargeOutlineDelegate(this));
  setIndentation(16);
  connect(this, &QTreeView::clicked, this, [this](const QModelIndex& index) {
    if (index.data(MoreRole).toBool()) openRow(index.siblingAtColumn(0));
  });
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

void LargeOutline::openRow(const QModelIndex& row) {
  if (row.data(MoreRole).toBool()) {
    Q_EMIT moreRequested(row);
  } else if (row.flags().testFlag(Qt::ItemNeverHasChildren)) {
    Q_EMIT openRequested(row);
  } else {
    CheckOutline::openRow(row);
  }
}

void LargeOutline::keyPressEvent(QKeyEvent* event) {
  const bool isSpace = event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier;
  if (isSpace && currentIndex().data(MoreRole).toBool()) {
    openRow(currentIndex());
  } else {
    CheckOutline::keyPressEvent(event);
  }
}

}  // namespace brisko
