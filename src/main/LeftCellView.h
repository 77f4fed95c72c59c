#pragma once

#include <QAbstractButton>

#include <memory>
#include <string>

namespace brisko {

class LeftCellViewCtr;

/// One row of the sidebar as data.
struct LeftCellItem {
  QString CellName;
  std::string CellIcon;
  std::string CellSelIcon;
  int CellID = 0;
  bool CellSelected = false;
  LeftCellViewCtr* CellCtl = nullptr;
};

/// A cell of the sidebar: forwards mouse clicks, and the keys that stand for one, to its
/// controller.
class LeftCellView : public QAbstractButton {
  Q_OBJECT

 public:
  explicit LeftCellView(QWidget* parent = nullptr);

  std::shared_ptr<LeftCellItem> dictItem;
  LeftCellViewCtr* delegate = nullptr;

 Q_SIGNALS:
  /// The user pressed an arrow key: focus goes to the cell this many rows further.
  void moveRequested(int rows);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
};

/// The highlight behind the selected cell.
class SelectBgImageView : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace brisko
