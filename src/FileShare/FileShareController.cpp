#include "FileShareController.h"

#include "ModuleTable.h"
#include "ui_FileShareController.h"

namespace brisko {

FileShareController::FileShareController() : PageController(9) {
  Ui::FileShareController ui;
  ui.setupUi(getView());
  ui.introView->showModule(moduleTable()[9]);
}

}  // namespace brisko
