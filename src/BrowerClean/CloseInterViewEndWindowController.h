#pragma once

#include "InternetModel.h"
#include "MessagePanel.h"

namespace brisko {

/// Says, modally, that the cleaning has ended, and what of it could not be done.
class CloseInterViewEndWindowController : public MessagePanel {
  Q_OBJECT

 public:
  explicit CloseInterViewEndWindowController(QWidget* parent);

  void showResult(const InternetModel& model);
};

}  // namespace brisko
