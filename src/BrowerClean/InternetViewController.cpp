#include "InternetViewController.h"

#include "ModuleTable.h"
#include "ui_InternetViewController.h"

namespace brisko {

InternetViewController::InternetViewController() : PageController(8) {
  Ui::InternetViewController ui;
  ui.setupUi(getView());
  ui.introView->showModule(moduleTable()[8]);
}

}  // namespace brisko
