#pragma once

#include "QuickActionsModel.h"

#include <QWidget>

namespace brisko {

class SwitchTile;

/// The grid of the eight quick switches. It reads their states whenever it comes into sight, and
/// the appearance's whenever that changes.
class HightActionViewController : public QWidget {
  Q_OBJECT

 public:
  explicit HightActionViewController(QWidget* parent = nullptr);
  ~HightActionViewController() override;

  // The buttons, in the order of the grid.

  void but_1Actton() { model_.press(QuickActions::kDesktopIcons); }
  void but_2Actton() { model_.press(QuickActions::kDarkMode); }
  void but_3Actton() { model_.press(QuickActions::kHiddenFiles); }
  void but_4Actton() { model_.press(QuickActions::kScreenSaver); }
  void but_5Actton() { model_.press(QuickActions::kKeepAwake); }
  void but_6Actton() { model_.press(QuickActions::kDoNotDisturb); }
  void but_7Action() { model_.press(QuickActions::kNightLight); }
  void but_8Action() { model_.press(QuickActions::kDockHiding); }

  const QuickActionsModel& model() const { return model_; }

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void update(int index);

  QuickActionsModel model_;
  std::array<SwitchTile*, QuickActions::kCount> tiles_{};
};

}  // namespace brisko
