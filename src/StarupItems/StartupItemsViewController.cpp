#include "StartupItemsViewController.h"

#include "ModuleTable.h"
#include "ui_StartupItemsViewController.h"

namespace brisko {

StartupItemsViewController::StartupItemsViewController() : PageController(7) {
  Ui::StartupItemsViewController ui;
  ui.setupUi(getView());
  ui.introView->showModule(moduleTable()[7]);
}

}  // namespace brisko
