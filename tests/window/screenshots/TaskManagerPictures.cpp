#include "AppDelegate.h"
#include "EntryTable.h"
#include "FakeWorkspace.h"
#include "Host.h"
#include "MainWindow.h"
#include "PageController.h"
#include "Pictures.h"
#include "TaskManagerViewController.h"

#include <memory>

namespace brisko::test {

void takeTaskManagerPictures(AppDelegate& delegate, DemoRoot&) {
  auto& page = static_cast<TaskManagerViewController&>(*delegate.pages()[6]);
  TaskManagerModel& model = page.model();
  delegate.goToPage(6);
  settle(300);
  if (model.allApplications().empty()) save(delegate.window(), "memory-manager-empty");
  auto& workspace = static_cast<FakeWorkspace&>(*Host::current().workspace);
  const char* names[] = {"Firefox", "Files", "Photo Desk", "Mail", "Terminal", "Music"};
  int process = 1;  // numbers that every machine has, so that there are figures
  for (const char* name : names) {
    LaunchedApplication made;
    made.name = name;
    made.iconName = "application-x-executable";
    made.processIdentifier = process++;
    workspace.applications.push_back(made);
  }
  model.refButtonAction();
  settle(300);
  model.setAllSelectOrNoSelect(false);
  model.changeCloseButtonState(1);
  model.changeCloseButtonState(3);
  page.getView()->findChild<EntryTable*>()->selectRow(3);
  save(delegate.window(), "memory-manager");
  workspace.applications.clear();
}

}  // namespace brisko::test
