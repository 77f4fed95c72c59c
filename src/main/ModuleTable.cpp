#include "ModuleTable.h"

#include "DiskViewController.h"
#include "DuplicateViewController.h"
#include "FastCleanViewController.h"
#include "FileShareController.h"
#include "InternetViewController.h"
#include "LagFileViewController.h"
#include "StartupItemsViewController.h"
#include "SystemStartViewController.h"
#include "TaskManagerViewController.h"
#include "UninstallViewController.h"

namespace brisko {
namespace {

template <typename Page>
std::unique_ptr<PageController> make() {
  return std::make_unique<Page>();
}

}  // namespace

const std::array<Module, 10>& moduleTable() {
  // Three names carry ".png" and the rest do not; the image lookup takes both. The Memory Manager
  // shows the icons once drawn for closing applications.
  static constexpr std::array<Module, 10> kModules = {{
      {0, "System Status", "ic_status@2x.png", "ic_status_active@2x", ModuleGroup::none,
       "Your machine at a glance.", &make<SystemStartViewController>},
      {1, "Junk Cleaner", "ic_system@2x.png", "ic_system_active@2x.png", ModuleGroup::cleanup,
       "Finds caches, logs and other leftovers that only take space.",
       &make<FastCleanViewController>},
      {2, "Uninstaller", "ic_app@2x", "ic_app_active@2x", ModuleGroup::cleanup,
       "Removes applications together with the files that they left behind.",
       &make<UninstallViewController>},
      {3, "Duplicate File Cleaner", "ic_duplicate@2x", "ic_duplicate_active@2x",
       ModuleGroup::cleanup, "Finds files with the same content and keeps one of each.",
       &make<DuplicateViewController>},
      {4, "Large/Old File Cleaner", "ic_large@2x", "ic_large_active@2x", ModuleGroup::cleanup,
       "Shows which files and folders take the most space.", &make<LagFileViewController>},
      {5, "Disk Manager", "ic_disk@2x", "ic_disk_active@2x", ModuleGroup::tools,
       "Shows disks and their health; renames, formats and ejects volumes.",
       &make<DiskViewController>},
      {6, "Memory Manager", "ic_quit@2x", "ic_quit_active@2x", ModuleGroup::tools,
       "Shows what running applications use, and closes them.", &make<TaskManagerViewController>},
      {7, "Startup Items Manager", "ic_startup@2x", "ic_startup_active@2x", ModuleGroup::tools,
       "Decides what opens by itself when you log in.", &make<StartupItemsViewController>},
      {8, "Internet Cleaner", "ic_internet@2x", "ic_internet_active@2x", ModuleGroup::privacy,
       "Erases what browsers remember: history, cookies, caches.", &make<InternetViewController>},
      {9, "File Shredder", "ic_shredder@2x", "ic_shredder_active@2x", ModuleGroup::privacy,
       "Overwrites files before removing them, so that they stay gone.",
       &make<FileShareController>},
  }};
  return kModules;
}

}  // namespace brisko
