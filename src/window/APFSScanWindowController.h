#pragma once

#include "NoticeWindow.h"

namespace brisko {

/// Says that the system protects the files which are to be cleaned. Run modally.
///
/// Who quits the program meanwhile sees it fade out first: the first request to quit is refused and
/// starts that, a second one is granted.
class APFSScanWindowController : public NoticeWindow {
  Q_OBJECT
  Q_PROPERTY(double alphaValue READ alphaValue WRITE setAlphaValue)

 public:
  explicit APFSScanWindowController(QWidget* parent = nullptr);
  ~APFSScanWindowController() override;

  QPushButton* okButton;

  /// Whether the program may end now.
  bool applicationShouldTerminate();
  /// Whether somebody asked for that.
  bool isShuttingDown() const { return shuttingDown; }

  double alphaValue() const { return alphaValue_; }
  void setAlphaValue(double alpha);

  void closeWindow();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void animationDidEnd();

  double alphaValue_ = 1;  ///< kept here: not every platform has windows that let others through
  bool shuttingDown = false;
};

}  // namespace brisko
