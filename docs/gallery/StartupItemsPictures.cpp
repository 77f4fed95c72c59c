#include "AppDelegate.h"
#include "DemoRoot.h"
#include "FakeWorkspace.h"
#include "Host.h"
#include "LoginItemsTable.h"
#include "MainWindow.h"
#include "PageController.h"
#include "Pictures.h"
#include "UKLoginItemRegistry.h"

#include <QWidget>

#include <filesystem>
#include <fstream>

namespace brisko::test {
namespace {

std::string makeEntry(const std::string& folder, const std::string& id, const std::string& name) {
  std::filesystem::create_directories(folder);
  std::string path = folder + "/" + id + ".desktop";
  std::ofstream(path) << "[Desktop Entry]\nType=Application\nName=" << name
                      << "\nExec=/bin/true\nIcon=" << id << "\n";
  static_cast<FakeWorkspace&>(*Host::current().workspace).names[path] = name;
  return path;
}

// What the program's first start leaves here: itself.
void takeFirstLaunchPicture(AppDelegate& delegate, DemoRoot& root, LoginItems& store) {
  root.makeFile("usr/bin/brisko", 1000);
  const std::string program = root.path() + "/usr/bin/brisko";
  static_cast<FakeWorkspace&>(*Host::current().workspace).names[program] = "Brisko";
  UKLoginItemRegistry::addLoginItemWithPath(program, false);
  settle(300);
  save(delegate.window(), "startup-items-first-launch");
  std::vector<LoginItem> items;
  store.snapshot(items);
  for (const LoginItem& item : items)
    store.remove(item);
}

}  // namespace

void takeStartupItemsPictures(AppDelegate& delegate, DemoRoot& root) {
  LoginItems& store = *Host::current().loginItems;
  std::vector<LoginItem> items;
  store.snapshot(items);
  for (const LoginItem& item : items)
    store.remove(item);
  std::filesystem::remove_all(root.path() + "/etc/xdg/autostart");
  delegate.goToPage(7);
  settle(300);
  save(delegate.window(), "startup-items-empty");
  takeFirstLaunchPicture(delegate, root, store);
  const std::string applications = root.path() + "/usr/share/applications";
  store.insertLast(makeEntry(applications, "thunderbird", "Thunderbird"), false);
  store.insertLast(makeEntry(applications, "telegram-desktop", "Telegram"), true);
  store.insertLast(makeEntry(applications, "org.keepassxc.KeePassXC", "KeePassXC"), false);
  root.makeFile("Users/anna/Documents/Week plan.ods", 1000);
  store.insertLast(root.path() + "/Users/anna/Documents/Week plan.ods", false);
  const std::string shared = root.path() + "/etc/xdg/autostart";
  makeEntry(shared, "tracker", "File indexer");
  makeEntry(shared, "updates", "Software updates");
  settle(300);
  store.setSwitched(store.switchedItems().front(), false);
  settle(300);
  delegate.window()->findChild<LoginItemsTable*>()->selectRow(1);
  save(delegate.window(), "startup-items");
}

}  // namespace brisko::test
