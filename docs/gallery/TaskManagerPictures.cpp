#include "AppDelegate.h"
#include "EntryTable.h"
#include "FakeWorkspace.h"
#include "Host.h"
#include "MainWindow.h"
#include "PageController.h"
#include "Pictures.h"
#include "TaskManagerViewController.h"

#include <cstdlib>
#include <fstream>
#include <string>

#include <sys/stat.h>

namespace brisko::test {
namespace {

struct Running {
  const char* name;
  const char* figures;  ///< processor, memory and time, as "ps" prints them
};

constexpr Running kRunning[] = {
    {"Firefox", "12.4 4213840 913 03:41:07"},  {"Files", "0.3 812040 84 06:02:51"},
    {"Photo Desk", "31.8 6120448 2210 48:12"}, {"Mail", "1.1 1904220 310 06:02:44"},
    {"Terminal", "0.6 644012 61 02:15:33"},    {"Music", "4.2 1310720 190 01:07:19"}};

/// A "ps" of the private tools folder that tells of those.
void makeProcessList() {
  const std::string path = std::string(::getenv("BRISKO_TOOLS")) + "/ps";
  std::ofstream tool(path);
  tool << "#!/bin/sh\necho header\n";
  int process = 1;
  for (const Running& each : kRunning) {
    tool << "echo 10:00:00 anna " << process++ << " " << each.figures << " - 10:00 - -\n";
  }
  tool.close();
  ::chmod(path.c_str(), 0755);
}

}  // namespace

void takeTaskManagerPictures(AppDelegate& delegate, DemoRoot&) {
  auto& page = static_cast<TaskManagerViewController&>(*delegate.pages()[6]);
  TaskManagerModel& model = page.model();
  delegate.goToPage(6);
  settle(300);
  if (model.allApplications().empty()) save(delegate.window(), "memory-manager-empty");
  auto& workspace = static_cast<FakeWorkspace&>(*Host::current().workspace);
  makeProcessList();
  int process = 1;
  for (const Running& each : kRunning) {
    LaunchedApplication made;
    made.name = each.name;
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
