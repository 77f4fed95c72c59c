#pragma once

#include "PageController.h"

namespace brisko {

/// The page of the File Shredder: what it is for.
class FileShareController : public PageController {
  Q_OBJECT

 public:
  FileShareController();
};

}  // namespace brisko
