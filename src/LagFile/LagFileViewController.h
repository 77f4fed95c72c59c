#pragma once

#include "PageController.h"

namespace brisko {

/// The page of the Large/Old File Cleaner: what it is for.
class LagFileViewController : public PageController {
  Q_OBJECT

 public:
  LagFileViewController();
};

}  // namespace brisko
