#include "DuplicateOutline.h"

#include "DuplicateTreeModel.h"
#include "EntryTable.h"
#include "ImageCheckBox.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "SortHeaderView.h"
#include "Theme.h"

#include <QPainter>

namespace brisko {
namespace {

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
    paintRowGround(painter, option.rect, (option.state & QStyle::State_Selected) != 0);
    const std::string image = index.data(ImageNameRole).toString().toStdString();
    if (index.column() == DuplicateTreeModel::Checkbox) {
      paintBox(painter, option.rect, index);
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

DuplicateOutline::DuplicateOutline(QWidget* parent) : CheckOutline(parent) {
  setHeader(new SortHeaderView(this));
  setTabOrder(header(), this);
  setItemDelegate(new OutlineDelegate(this));
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

void DuplicateOutline::openRow(const QModelIndex& row) {
  if (row.parent().isValid()) {
    Q_EMIT revealRequested(row);
  } else {
    CheckOutline::openRow(row);
  }
}

}  // namespace brisko
