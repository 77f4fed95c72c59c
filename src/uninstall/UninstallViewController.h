#pragma once

#include "PageController.h"

namespace brisko {

/// The page of the App Uninstaller: what it is for.
class UninstallViewController : public PageController {
  Q_OBJECT

 public:
  UninstallViewController();
};

}  // namespace brisko
