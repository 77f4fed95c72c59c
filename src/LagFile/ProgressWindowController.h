#pragma once

#include "PanelWindow.h"

#include <cstddef>
#include <string>

class QLabel;
class QProgressBar;
class QPushButton;

namespace brisko {

/// The window of a removal: how far it is, the entry it is at, and a way to stop it. Nothing else
/// can be done while it is shown.
class ProgressWindowController : public PanelWindow {
  Q_OBJECT

 public:
  explicit ProgressWindowController(QWidget* parent = nullptr);

  /// `point` is 0 to 100.
  void setProgress(int point, const std::string& path);

  /// Escape and the title bar's button stop the removal; the window closes when that has ended.
  void reject() override { stop(); }

 Q_SIGNALS:
  void stopRequested();

 private:
  void stop();

  QProgressBar* bar_;
  QLabel* pathLabel_;
  QPushButton* stopButton_;
};

}  // namespace brisko
