#pragma once

#include "DiskFormat.h"

#include <QWidget>

#include <memory>

class QPushButton;

namespace Ui {
class FormatEndViewController;
}

namespace brisko {

class FormatPanelWindow;

/// The panel after a format. What it says goes by what the disk tool said.
class FormatEndViewController : public QWidget {
  Q_OBJECT

 public:
  explicit FormatEndViewController(QWidget* parent = nullptr);
  ~FormatEndViewController() override;

  FormatPanelWindow* superDelegate = nullptr;  ///< hosts the panel; the close button closes it

  void showEnd(const FormatPlan& plan, const DiskCommandEnd& end);

 private:
  std::unique_ptr<Ui::FormatEndViewController> ui_;
  QPushButton* closeButton;
};

}  // namespace brisko
