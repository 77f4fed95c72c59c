#pragma once

#include "DiskModel.h"
#include "PageController.h"
#include "WatchMountUnmount.h"

#include <array>
#include <memory>
#include <string>

namespace Ui {
class DiskViewController;
}

namespace brisko {

class DiskTreeModel;
class FormatEndViewController;
class FormatPanelWindow;
class MakeSureFormatViewController;

/// The Disk Manager's page: shows what its model says, and tells it what was pressed.
class DiskViewController : public PageController, private DiskModelListener {
  Q_OBJECT

 public:
  DiskViewController();
  ~DiskViewController() override;

  bool isCanClick() const override { return model_.isCanClick(); }
  DiskModel& model() { return model_; }

  void getDiskInfo() { model_.getDiskInfo(); }
  static int OSVersion() { return DiskModel::OSVersion(); }

  // Rename in place.
  void renamButtonAction();
  void okButtonAction();
  void renameCancelButtonAction();

  // Format.
  void formatButtonAction();
  /// How many characters fit, when the name is too long for the type; else "".
  std::string formatRefusal(const std::string& name, const std::string& type) const;
  void makeSureToFormatSelectVolumeWithName(const std::string& name, const std::string& type);
  void showFormatEndWindow();

  /// Ejects what is selected.
  void EjectVolumes() { model_.EjectVolumes(); }

  /// Fills the detail panel from the selected node.
  void setDetailViewValue();
  /// Shows the operations that are offered for it.
  void checkNTFS();

 private:
  void treeChanged() override;
  void selectionChanged() override;
  void healthChanged() override;
  void busyChanged() override;
  void operationFailed(const std::string& what, const std::string& reason) override;
  void formatEnded(const FormatPlan& plan, const DiskCommandEnd& end) override;
  void reformatFailed(const FormatPlan& plan, const DiskCommandEnd& end) override;

  void connectControls();
  void watchVolumes();
  void showRenameView(const DiskNode& node);
  void showContent();

  DiskModel model_;
  std::unique_ptr<Ui::DiskViewController> ui_;
  DiskTreeModel* tree_;
  std::unique_ptr<WatchMountUnmount> watchMu;
  std::array<int, 2> observers_{};
  std::unique_ptr<FormatPanelWindow> formatPanel_;
  std::unique_ptr<FormatPanelWindow> formatEndPanel_;
  MakeSureFormatViewController* makeSureFormatVC = nullptr;  ///< in formatPanel_
  FormatEndViewController* formatEndVC = nullptr;            ///< in formatEndPanel_
  FormatPlan lastPlan_;
  DiskCommandEnd lastEnd_;
  DiskNode renaming_;      ///< null while the rename view is hidden
  bool isEndDue_ = false;  ///< the completion panel comes in a moment
  bool isFillingTree_ = false;
};

}  // namespace brisko
