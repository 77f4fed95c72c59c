#include "UninstallViewController.h"

#include "ModuleTable.h"
#include "ui_UninstallViewController.h"

namespace brisko {

UninstallViewController::UninstallViewController() : PageController(2) {
  Ui::UninstallViewController ui;
  ui.setupUi(getView());
  ui.introView->showModule(moduleTable()[2]);
}

}  // namespace brisko
