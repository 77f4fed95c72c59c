#pragma once

#include "PageController.h"

namespace brisko {

/// The page of the Startup Items Manager: what it is for.
class StartupItemsViewController : public PageController {
  Q_OBJECT

 public:
  StartupItemsViewController();
};

}  // namespace brisko
