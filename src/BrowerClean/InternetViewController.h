#pragma once

#include "PageController.h"

namespace brisko {

/// The page of the Internet Cleaner: what it is for.
class InternetViewController : public PageController {
  Q_OBJECT

 public:
  InternetViewController();
};

}  // namespace brisko
