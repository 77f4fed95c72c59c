#pragma once

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <string>

class QLabel;
class QLineEdit;
class QPushButton;

namespace Ui {
class MakeSureFormatViewController;
}

namespace brisko {

class DiskViewController;
class FormatPanelWindow;
class FormatTypeViewController;

/// The panel that asks before a volume is formatted, and shows that it is being done.
class MakeSureFormatViewController : public QWidget {
  Q_OBJECT

 public:
  explicit MakeSureFormatViewController(DiskViewController* page);
  ~MakeSureFormatViewController() override;

  DiskViewController* delegate;
  FormatPanelWindow* superDelegate = nullptr;  ///< hosts the panel; closing it closes that

  /// The volume's name and its current type. The name can be changed a moment later.
  void setName(const std::string& volumeName, const std::string& type);

  void okButtonAction();
  void noButtonAction() { closeWindow(); }
  void closeWindow();

  void openMenuAction();
  /// A row of the type menu: 0, 1 or 2.
  void selectFormatbyType(int row);
  /// The mouse has left the menu's rows, or is over one again.
  void mouseEixtView(bool hasLeft);
  bool isPopSortWin() const { return isPopSortWin_; }

 private:
  void chengTextStart();
  void closeMenu();

  std::unique_ptr<Ui::MakeSureFormatViewController> ui_;
  QPushButton* okButton;
  QPushButton* noButton;
  QLineEdit* nameTextFiled;
  QLabel* typeLabel;
  QPushButton* typeSelectBut;
  QPointer<FormatTypeViewController> menu_;
  QTimer leaving_;
  bool isPopSortWin_ = false;
};

}  // namespace brisko
