#include "DuplicateViewController.h"

#include "ModuleTable.h"
#include "ui_DuplicateViewController.h"

namespace brisko {

DuplicateViewController::DuplicateViewController() : PageController(3) {
  Ui::DuplicateViewController ui;
  ui.setupUi(getView());
  ui.introView->showModule(moduleTable()[3]);
}

}  // namespace brisko
