#pragma once

#include "PanelWindow.h"

namespace brisko {

/// The floating window that hosts a format panel.
class FormatPanelWindow : public PanelWindow {
  Q_OBJECT

 public:
  explicit FormatPanelWindow(QWidget* parent = nullptr);

  /// Takes the panel over and shows it as the window's content.
  void host(QWidget* panel);

  /// While it cannot be closed, Escape and the close button do nothing: an erase that has begun
  /// is not undone by closing a window.
  void setClosable(bool closable);
  void reject() override;

 private:
  bool isClosable_ = true;
};

}  // namespace brisko
