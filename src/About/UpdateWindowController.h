#pragma once

#include "PanelWindow.h"
#include "VersionCheck.h"

#include <atomic>
#include <memory>

class QLabel;
class QPropertyAnimation;
class QWidget;

namespace Ui {
class UpdateVersionXib;
}

namespace brisko {

/// The version check's window. It checks once, when it is made; shown again, it shows what that
/// came to. Main thread only.
class UpdateWindowController : public PanelWindow {
  Q_OBJECT

 public:
  explicit UpdateWindowController(QWidget* parent = nullptr);
  ~UpdateWindowController() override;

  /// Shows what the check came to.
  void whatIsNewVersionDiff(const VersionResult& result);

  /// The height that `text` needs in the system's font of `points`, wrapped at `width` points.
  static int heightForStringDrawing(const QString& text, int points, int width);

  /// Opens the page where the new version can be had.
  void updateClickHereAction();

  /// Ends the modal session and hides the window at once.
  void closeWindow();

  /// Fades the window out, then closes it. Always false: nothing closes before that.
  bool windowShouldClose();

  /// True when the process may end now. Else the window fades first and `terminateRequested`
  /// follows.
  bool applicationShouldTerminate();

 Q_SIGNALS:
  void terminateRequested();

 protected:
  void showEvent(QShowEvent* event) override;
  void reject() override;

 private:
  /// Starts the check in the background.
  void getVersionChange();
  void animationDidStop();
  void setImages();
  void showOnly(QWidget* panel);
  void addNotes(const VersionResult& result);
  QLabel* noteField(const QString& text, const QString& note);

  std::unique_ptr<Ui::UpdateVersionXib> ui_;
  QPropertyAnimation* fade_ = nullptr;
  bool shuttingDown = false;
  /// Outlives the window, for a check that is still under way then.
  std::shared_ptr<std::atomic<bool>> stop_ = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace brisko
