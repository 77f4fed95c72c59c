#pragma once

#include "FileShareModel.h"
#include "PageController.h"

#include <QPointer>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Ui {
class FileShareController;
}

namespace brisko {

class FileShareTableModel;
class ShredProgressWindowController;

/// The page of the File Shredder: a drop area while its list is empty, else the list, the number of
/// passes and the button that erases what is ticked.
class FileShareController : public PageController, private FileShareModelListener {
  Q_OBJECT

 public:
  FileShareController();
  ~FileShareController() override;

  bool isCanClick() const override { return model_.isCanClick(); }

  void selectFileButtonAction();
  void viewDragAction(const std::vector<std::string>& paths);
  void setAllSelectOrNoSelect();
  void emptyListButtonAction();
  void removeFromListAction();
  void erasreButtonAction();
  void cancelShred();

  /// Another way to ask for items than the chooser.
  void setItemChooser(std::function<std::vector<std::string>()> choose) {
    choose_ = std::move(choose);
  }
  FileShareModel& model() { return model_; }
  /// Null while no run is shown.
  ShredProgressWindowController* progressWindow() const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void listChanged() override;
  void pageChanged() override;
  void planReady() override;
  void changeProgressValue(int percentage, const std::string& path) override;
  void showEndShred() override;

  void connectControls();
  void tellOfNtfs(const std::vector<std::string>& paths);
  void showTimes();
  void showSummary();
  bool isEraseWanted();

  FileShareModel model_;
  std::unique_ptr<Ui::FileShareController> ui_;
  FileShareTableModel* table_;
  QPointer<ShredProgressWindowController> shredProgessWC_;
  std::function<std::vector<std::string>()> choose_;
};

}  // namespace brisko
