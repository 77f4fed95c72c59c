#pragma once

#include "PanelWindow.h"
#include "RelatedFilesModel.h"

#include <memory>

namespace Ui {
class AMRelatedFilesWindowController;
}

namespace brisko {

class RelatedFilesTree;
class UninstallProgressWindowController;

/// The review of what would go, and after it the removal with its progress window. Both windows are
/// modal. The administrator's right that a removal was given lives as long as this does.
class AMRelatedFilesWindowController : public PanelWindow, private RelatedFilesModelListener {
  Q_OBJECT

 public:
  explicit AMRelatedFilesWindowController(QWidget* parent);
  ~AMRelatedFilesWindowController() override;

  /// Shows the review of these; true when the user wants the removal.
  bool review(const AppItems& chosen, AppItems installed);
  /// Removes what was ticked, and returns when the user has seen the end.
  void doRemove();

  void clickedDeleteBtn();
  void clickedCancelBtn() { reject(); }

  RelatedFilesModel& model() { return model_; }

 private:
  void groupFilled(std::size_t group) override;
  void ticksChanged() override;
  void sizesChanged() override;
  void progressChanged() override;
  void removalEnded() override;

  void selectRemoveLanguage(const QModelIndex& index);
  void showButton();
  void showWarnings();
  void showProgress();
  void uninstallEnd();

  RelatedFilesModel model_;
  std::unique_ptr<Ui::AMRelatedFilesWindowController> ui_;
  RelatedFilesTree* tree_;
  std::unique_ptr<UninstallProgressWindowController> uninstallPWC_;  ///< while it is shown
};

}  // namespace brisko
