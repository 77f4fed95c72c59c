#include "DiskViewController.h"

#include "ModuleTable.h"
#include "ui_DiskViewController.h"

namespace brisko {

DiskViewController::DiskViewController() : PageController(5) {
  Ui::DiskViewController ui;
  ui.setupUi(getView());
  ui.introView->showModule(moduleTable()[5]);
}

}  // namespace brisko
