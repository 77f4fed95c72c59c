#include "APFSScanWindowController.h"
#include "AppDelegate.h"
#include "BrowserProfiles.h"
#include "DemoRoot.h"
#include "Dispatch.h"
#include "EntryTable.h"
#include "FakeInstalledApplications.h"
#include "FakeWorkspace.h"
#include "Host.h"
#include "InternetViewController.h"
#include "MainWindow.h"
#include "Pictures.h"
#include "RingButton.h"

#include <filesystem>

namespace brisko::test {
namespace {

using Page = InternetModel::Page;

void fill(DemoRoot& root) {
  const std::string home = root.path() + "/Users/anna/";
  std::filesystem::remove_all(home + ".config/chromium");
  std::filesystem::remove_all(home + ".mozilla");
  const std::string chromium = home + ".config/chromium/Default/";
  makeHistory(chromium + "History", 2418);
  makeCookies(chromium + "Cookies", 316);
  makeLogins(chromium + "Login Data", 42);
  makePlaces(home + ".mozilla/firefox/k3x.default-release/places.sqlite", 900);
  root.makeFile("Users/anna/.config/chromium/Default/Preferences", 100);
  root.makeFile("Users/anna/.config/chromium/Default/Sessions/Tabs", 218'000);
  root.makeFile("Users/anna/.cache/chromium/Default/Cache/data", 318'400'000);
  root.makeFile("Users/anna/.mozilla/firefox/k3x.default-release/prefs.js", 100);
  root.makeFile("Users/anna/.mozilla/firefox/k3x.default-release/cookies.sqlite", 524'288);
  root.makeFile("Users/anna/.cache/mozilla/firefox/k3x.default-release/cache2/data", 141'000'000);
}

void installDemoBrowsers() {
  auto made = std::make_unique<FakeInstalledApplications>();
  const std::pair<const char*, const char*> browsers[] = {
      {"firefox", "Firefox"}, {"chromium", "Chromium"}, {"vivaldi-stable", "Vivaldi"}};
  for (const auto& [id, name] : browsers) {
    InstalledApplication application;
    application.desktopID = id;
    application.name = name;
    application.iconName = id;
    application.kind = InstalledApplication::Kind::package;
    made->applications.push_back(application);
  }
  Host::current().installedApplications = std::move(made);
}

void waitUntilScanned(InternetModel& model) {
  while (model.indePage() != Page::scanned)
    settle(10);
}

}  // namespace

void takeInternetPictures(AppDelegate& delegate, DemoRoot& root) {
  auto& internet = static_cast<InternetViewController&>(*delegate.pages()[8]);
  auto& workspace = static_cast<FakeWorkspace&>(*Host::current().workspace);
  auto before = std::move(Host::current().installedApplications);
  installDemoBrowsers();
  fill(root);
  QWidget* page = internet.getView();
  InternetModel& model = internet.model();
  delegate.goToPage(8);
  save(delegate.window(), "browsers-start");
  workspace.applications = {{"", "Google Chrome", "", "", 1}, {"firefox", "Firefox", "", "", 1}};
  clickAndAnswer(page, "mainButton", "browsers-close", "answer0");
  workspace.applications.clear();
  click(page, "mainButton");
  for (int i = 0; i < 42; ++i)
    model.raiseProgress();
  page->findChild<RingButton*>()->finishMovement();
  saveNow(delegate.window(), "browsers-scanning");
  waitUntilScanned(model);
  save(delegate.window(), "browsers-scanned");
  auto* left = page->findChild<EntryTable*>(QStringLiteral("leftTableView"));
  left->setCurrentIndex(left->model()->index(1, 1));
  model.selectBrower(model.browserArr()[1]->chrArr[4]);
  model.selectBrower(model.browserArr()[2]);
  save(delegate.window(), "browsers-partly-selected");
  model.selectBrower(model.browserArr()[1]->chrArr[4]);
  const std::string logins = root.path() + "/Users/anna/.config/chromium/Default/Login Data";
  {
    OtherConnection other(logins);
    other.run("BEGIN EXCLUSIVE");
    clickAndAnswer(page, "mainButton", "browsers-confirm", "answer1");
    saveNow(delegate.window(), "browsers-erasing");
    answerNext("browsers-not-erased", "answer0");
    waitUntilScanned(model);
    settle(200);
    left->setCurrentIndex(left->model()->index(1, 1));
    save(delegate.window(), "browsers-erased");
    other.run("ROLLBACK");
  }
  click(page, "backHomeButton");
  Host::current().installedApplications = std::make_unique<FakeInstalledApplications>();
  click(page, "mainButton");
  waitUntilScanned(model);
  save(delegate.window(), "browsers-none");
  click(page, "backHomeButton");
  APFSScanWindowController notice(delegate.window());
  notice.show();
  save(&notice, "browsers-protected");
  notice.hide();
  Host::current().installedApplications = std::move(before);
}

}  // namespace brisko::test
