#pragma once

#include <QPushButton>
#include <QWidget>

#include <array>

namespace brisko {

class MakeSureFormatViewController;

/// The menu of file-system types: a child window with one item for each.
class FormatTypeViewController : public QWidget {
  Q_OBJECT

 public:
  explicit FormatTypeViewController(MakeSureFormatViewController* panel);

  MakeSureFormatViewController* delegate;

  /// Opens below the button, as wide as it.
  void popUp(const QWidget* button);
  /// The item that was clicked.
  void selectSortType(int identifier);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QPushButton* addItem(int identifier);

  QPushButton* view_1;
  QPushButton* view_2;
  QPushButton* view_4;
};

}  // namespace brisko
