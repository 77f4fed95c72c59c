#pragma once

#include "PanelWindow.h"

#include <memory>
#include <string>

namespace Ui {
class UninstallProgressWindowController;
}

namespace brisko {

struct UninstallFailure;

/// The window that shows a removal going on, and what came of it. Modal; it closes only at the end,
/// because nothing can take back what is under way.
class UninstallProgressWindowController : public PanelWindow {
  Q_OBJECT

 public:
  explicit UninstallProgressWindowController(QWidget* parent);
  ~UninstallProgressWindowController() override;

  /// Sets the bar and shows the path that was handled last; at 100 the end view takes their place.
  void changeProgressValue(int percentage, const std::string& withShredingPath);
  /// Shows a path or a step without moving the bar.
  void showStep(const std::string& text);
  /// Sets the end message.
  void changeLabel(const std::string& message);
  /// Offers to show what stayed. `failures` may be empty.
  void showFailures(std::vector<UninstallFailure> failures);
  /// The OK button and the close button.
  void okButtonAction();

  void reject() override { okButtonAction(); }

 private:
  void listFailures();

  std::unique_ptr<Ui::UninstallProgressWindowController> ui_;
  std::vector<UninstallFailure> failures_;
  bool isEnded_ = false;
};

}  // namespace brisko
