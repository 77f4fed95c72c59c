#pragma once

#include "LeftCellView.h"

#include <QObject>
#include <QRect>

#include <memory>
#include <vector>

class QLabel;

namespace Ui {
class LeftViewCtl;
}

namespace brisko {

/// The sidebar: ten cells in module-table order, below the first under three headings.
class LeftViewCtl : public QObject {
  Q_OBJECT

 public:
  static constexpr int kWidth = 230;
  static constexpr int kCellHeight = 42;

  explicit LeftViewCtl(QObject* parent = nullptr);
  ~LeftViewCtl() override;

  QWidget* view() const { return view_; }

  void awakeFromNib();
  void createCellView();

  /// Makes `item` the selected one and shows its page, also when it was selected already.
  void selectCellView(const std::shared_ptr<LeftCellItem>& item);

  /// The rectangle of the cell that follows the one of row `iID` at `rect`.
  QRect getNextRect(const QRect& rect, int iID) const;

  const std::vector<std::shared_ptr<LeftCellItem>>& cells() const { return cellObjs; }

 private:
  void moveFocus(int row);

  std::unique_ptr<Ui::LeftViewCtl> ui_;
  QWidget* view_;
  std::vector<std::shared_ptr<LeftCellItem>> cellObjs;
  QWidget* cleanupView;
  QWidget* viewTools;
  QLabel* cleanupLabel;
  QLabel* toolLabel;
  QWidget* privacyView;
  QLabel* privacyLabel;
};

}  // namespace brisko
