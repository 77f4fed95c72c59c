#pragma once

#include "PanelWindow.h"

#include <memory>
#include <string>

class QLabel;

namespace Ui {
class ShredProgressWindowController;
}

namespace brisko {

/// The modal window of a run: the item at work and the percentage, then how the run went. It cannot
/// be closed while the run lasts: Escape and the close button ask to cancel.
class ShredProgressWindowController : public PanelWindow {
  Q_OBJECT

 public:
  explicit ShredProgressWindowController(QWidget* parent = nullptr);
  ~ShredProgressWindowController() override;

  /// Shows a whole percentage and the path at work.
  void changeProgressValue(int percentage, const std::string& path);
  /// The two ends; `detail` is a further line, such as what was not reached.
  void showFailView(const QString& detail);
  void showSeccView(const QString& sentence, const QString& detail);

  QLabel* failedNodeLable() const;

  void reject() override;

 Q_SIGNALS:
  /// The user wants the run to stop.
  void cancelShred();

 private:
  bool isOver() const;

  std::unique_ptr<Ui::ShredProgressWindowController> ui_;
};

}  // namespace brisko
