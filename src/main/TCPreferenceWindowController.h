#pragma once

#include "PanelWindow.h"

namespace brisko {

/// The about box: mark, name, version, licence.
class TCPreferenceWindowController : public PanelWindow {
  Q_OBJECT

 public:
  explicit TCPreferenceWindowController(QWidget* parent = nullptr);
};

}  // namespace brisko
