#pragma once

#include "LeftCellView.h"

#include <QObject>

#include <memory>

class QLabel;
class QMouseEvent;

namespace Ui {
class LeftCellView;
}

namespace brisko {

class ImageView;
class LeftViewCtl;

/// Controller of one sidebar cell.
class LeftCellViewCtr : public QObject {
  Q_OBJECT

 public:
  explicit LeftCellViewCtr(QObject* parent = nullptr);
  ~LeftCellViewCtr() override;

  LeftCellView* view() const { return view_; }

  /// Takes the item, shows its name and becomes its view's delegate.
  void setItem(const std::shared_ptr<LeftCellItem>& item);

  /// Shows whether the item is the selected one.
  void refreshCellView();

  /// A click in the cell: ignored while a page is busy. The event may be null.
  void mouseDown(QMouseEvent* event);

  LeftViewCtl* delegate = nullptr;

 private:
  std::unique_ptr<Ui::LeftCellView> ui_;
  LeftCellView* view_;
  ImageView* iconImageView;
  QLabel* nameLabel;
  QWidget* selectBgImageView;
  std::shared_ptr<LeftCellItem> dictItem;
};

}  // namespace brisko
