#include "FastCleanViewController.h"

#include "ModuleTable.h"
#include "ui_FastCleanViewController.h"

namespace brisko {

FastCleanViewController::FastCleanViewController() : PageController(1) {
  Ui::FastCleanViewController ui;
  ui.setupUi(getView());
  ui.introView->showModule(moduleTable()[1]);
}

}  // namespace brisko
