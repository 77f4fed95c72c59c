#pragma once

#include "Controller.h"

#include <QBasicTimer>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <string>

class QWidget;

namespace Ui {
class ListFileViewController;
}

namespace brisko {

class FileFilterButtons;
class LargeTreeModel;
class ProgressWindowController;

/// What the page is told by its content.
class ListFileDelegate {
 public:
  virtual ~ListFileDelegate() = default;
  virtual void showDetailPage() = 0;            ///< a scan has begun
  virtual void changeToRemoveButton() = 0;      ///< it is over
  virtual void listFileBackButtonAction() = 0;  ///< back to choosing
  virtual void changeMainButtonStart(bool enabled) = 0;
  virtual void toProWithValue(float percentage) = 0;  ///< 0 to 100
  /// The folder cannot be shown: why, in a sentence.
  virtual void cannotShow(const QString& title, const QString& sentence) = 0;
  /// Everything that was listed is gone.
  virtual void everythingRemoved(std::size_t count, std::uint64_t freedBytes) = 0;
  /// The line of the footer, and the smaller one below it.
  virtual void showStatus(const QString& line, const QString& detail) = 0;
};

/// The content of the Large/Old File Cleaner's page: outline, map, preview and filters of the
/// folder that was chosen; scanning, pausing and removing. Draws what the `Controller` holds.
class ListFileViewController : public QObject, private ControllerDelegate {
  Q_OBJECT

 public:
  /// Puts itself into `view`.
  ListFileViewController(QWidget* view, ListFileDelegate* detagate);
  ~ListFileViewController() override;

  Controller& controller() { return controller_; }

  /// The chooser of folders; tests put their own answer in its place.
  void setFolderChooser(std::function<std::optional<std::string>()> choose) {
    choose_ = std::move(choose);
  }

  /// Asks for a folder and shows it.
  void selectFileButtonAction();
  /// Shows the folder at `path` when anything is in it.
  void showFolder(const std::string& path);
  void stopScanButtonAction();
  void pauseButtonAction();
  /// Asks, and removes what is ticked.
  void deleteFiles();
  void deleteFileButtonAction();
  void backButtonAction();

  bool isPaused() const;
  bool isRemoving() const { return controller_.isRemoving(); }

 protected:
  void timerEvent(QTimerEvent* event) override;

 private:
  void treeReset() override;
  void treeGrew() override;
  void scanIsOver() override;
  void reloadTree() override;
  void treeWillChange() override;
  void treeDidChange() override;
  void changeProgressWithPoint(int point, const std::string& path) override;
  void removeEnd() override;

  void setUpOutline();
  void connectControls();
  void getRootNodeListWithPath(const std::string& path);
  void endScanning();
  void doRemoveAction();
  void showFailures();
  void showProgress();
  void showStatus();
  void showEmpty();
  void showNode(const FileNode* node);
  void chooseInOutline(FileNode* node);
  void applyFilter();

  QWidget* view_;
  std::unique_ptr<Ui::ListFileViewController> ui_;
  ListFileDelegate* detagate_;
  Controller& controller_;
  LargeTreeModel* tree_;
  FileFilterButtons* filters_;
  std::function<std::optional<std::string>()> choose_;
  std::unique_ptr<ProgressWindowController> progressWindow_;
  QBasicTimer sortTimer_;  ///< while scanning: takes what came into the outline
  bool hasGrown_ = false;
  bool isShown_ = false;  ///< the scan at work was not ended by the user yet
};

}  // namespace brisko
