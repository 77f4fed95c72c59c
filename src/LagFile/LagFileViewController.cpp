#include "LagFileViewController.h"

#include "ModuleTable.h"
#include "ui_LagFileViewController.h"

namespace brisko {

LagFileViewController::LagFileViewController() : PageController(4) {
  Ui::LagFileViewController ui;
  ui.setupUi(getView());
  ui.introView->showModule(moduleTable()[4]);
}

}  // namespace brisko
