#pragma once

#include <QStyledItemDelegate>

#include <string>

namespace brisko {

/// Draws the rows of the duplicates' outline: box, icon, name with its tags, and figures.
class DuplicateOutlineDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  static constexpr int kRowHeight = 36;

  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;

 private:
  static void paintName(QPainter* painter, const QRect& rect, const QModelIndex& index,
                        const std::string& image);
};

}  // namespace brisko
