#pragma once

#include "MessagePanel.h"

namespace brisko {

/// Whoever asked for the running browsers to be closed.
class CloseBrowerDelegate {
 public:
  virtual ~CloseBrowerDelegate() = default;
  virtual void closeBrowerButtonAction() = 0;
};

/// Asks, modally, whether the browsers that run are to be closed. Its cancel button only closes it.
class CloseBrowerWindowController : public MessagePanel {
  Q_OBJECT

 public:
  CloseBrowerWindowController(CloseBrowerDelegate* delegate, QWidget* parent);

  void changeNodeLabelWithStr(const std::string& text);
};

}  // namespace brisko
