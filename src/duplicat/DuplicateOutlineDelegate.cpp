#include "DuplicateOutlineDelegate.h"

#include "CheckOutline.h"
#include "DuplicateTreeModel.h"
#include "EntryTable.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "Theme.h"

#include <QPainter>

namespace brisko {

QSize DuplicateOutlineDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
  return {40, kRowHeight};
}

void DuplicateOutlineDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                     const QModelIndex& index) const {
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

void DuplicateOutlineDelegate::paintName(QPainter* painter, const QRect& rect,
                                         const QModelIndex& index, const std::string& image) {
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

}  // namespace brisko
