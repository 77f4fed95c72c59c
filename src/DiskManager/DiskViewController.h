#pragma once

#include "PageController.h"

namespace brisko {

/// The page of the Disk Manager: what it is for.
class DiskViewController : public PageController {
  Q_OBJECT

 public:
  DiskViewController();
};

}  // namespace brisko
