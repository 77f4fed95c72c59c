#pragma once

#include "PageController.h"

namespace brisko {

/// The page of the Memory Manager: what it is for.
class TaskManagerViewController : public PageController {
  Q_OBJECT

 public:
  TaskManagerViewController();
};

}  // namespace brisko
