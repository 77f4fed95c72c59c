#pragma once

#include "PageController.h"

namespace brisko {

/// The page of x: what it is for.
class FastCleanViewController : public PageController {
  Q_OBJECT

 public:
  FastCleanViewController();
};

}  // namespace brisko
