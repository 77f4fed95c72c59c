#pragma once

#include "PageController.h"

class QGridLayout;

namespace brisko {

/// System Status: the mounted volumes with their use, and the ways to all modules.
class SystemStartViewController : public PageController {
  Q_OBJECT

 public:
  SystemStartViewController();

 private:
  void addModuleCards(QGridLayout* grid);
};

}  // namespace brisko
