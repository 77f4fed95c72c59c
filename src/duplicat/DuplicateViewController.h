#pragma once

#include "PageController.h"

namespace brisko {

/// The page of the Duplicate File Cleaner: what it is for.
class DuplicateViewController : public PageController {
  Q_OBJECT

 public:
  DuplicateViewController();
};

}  // namespace brisko
