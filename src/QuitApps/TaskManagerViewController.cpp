#include "TaskManagerViewController.h"

#include "ModuleTable.h"
#include "ui_TaskManagerViewController.h"

namespace brisko {

TaskManagerViewController::TaskManagerViewController() : PageController(6) {
  Ui::TaskManagerViewController ui;
  ui.setupUi(getView());
  ui.introView->showModule(moduleTable()[6]);
}

}  // namespace brisko
