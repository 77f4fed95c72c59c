#include "BrowserProfiles.h"
#include "Dispatch.h"
#include "FakeInstalledApplications.h"
#include "FakeWorkspace.h"
#include "InternetModel.h"
#include "TestHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisko::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Page = InternetModel::Page;
using Kind = InstalledApplication::Kind;

/// Browsers that the desktop knows, in the home of "anna".
class DesktopBrowsers : public testing::Test {
 protected:
  DesktopBrowsers() : host_(folder_.path()) {
    Dispatch::attachMainThread();
    auto workspace = std::make_unique<FakeWorkspace>();
    workspace_ = workspace.get();
    Host::current().workspace = std::move(workspace);
    auto installed = std::make_unique<FakeInstalledApplications>();
    installed_ = installed.get();
    Host::current().installedApplications = std::move(installed);
    model_ = std::make_unique<InternetModel>();
  }
  ~DesktopBrowsers() override {
    model_.reset();
    Dispatch::waitForBackground();
    Dispatch::runPending();
  }

  void install(const std::string& id, const std::string& name, Kind kind = Kind::package) {
    InstalledApplication application;
    application.desktopID = id;
    application.name = name;
    application.kind = kind;
    installed_->applications.push_back(application);
  }
  std::string home(const std::string& path) const { return "Users/anna/" + path; }
  std::string path(const std::string& inHome) const { return folder_ / home(inHome); }
  void scan() {
    model_->getBrowserArr();
    Dispatch::runUntil([&] { return model_->indePage() == Page::scanned; });
  }
  void clean() {
    model_->cleanBrowerFiles();
    Dispatch::runUntil([&] { return model_->isCanClick(); });
  }
  std::string sizeOf(std::size_t browser, const std::string& name) {
    for (const auto& kind : model_->browserArr().at(browser)->chrArr) {
      if (kind->name == name) return kind->size;
    }
    return "no such kind";
  }

  TemporaryFolder folder_;
  TestHost host_;
  FakeWorkspace* workspace_ = nullptr;
  FakeInstalledApplications* installed_ = nullptr;
  std::unique_ptr<InternetModel> model_;
};

TEST_F(DesktopBrowsers, EveryProfileOfEachInstallationIsCountedAndCleaned) {
  install("chromium", "Web Browser");
  install("chromium-browser", "Another entry of it");
  install("org.chromium.Chromium", "Chromium (Flatpak)", Kind::flatpak);
  install("org.gnome.Calculator", "Calculator");
  makeHistory(path(".config/chromium/Default/History"), 10);
  makeHistory(path(".config/chromium/Profile 1/History"), 5);
  makeHistory(path(".var/app/org.chromium.Chromium/config/chromium/Default/History"), 2);
  makeHistory(folder_ / "elsewhere/History", 4);
  folder_.link(home(".config/chromium/Linked"), folder_ / "elsewhere");
  folder_.file(home(".config/chromium/Default/Preferences"), "kept");
  folder_.file(home(".config/chromium/Default/Sessions/Tabs"));
  folder_.file(home(".config/chromium/Crash Sessions/Session"), "no profile");
  scan();
  ASSERT_EQ(model_->browserArr().size(), 2U) << "one row for what is shared";
  EXPECT_EQ(model_->browserArr()[0]->name, "Web Browser");
  EXPECT_EQ(sizeOf(0, "Browsing History"), "15 Items");
  EXPECT_EQ(sizeOf(1, "Browsing History"), "2 Items");
  model_->selectBrower(model_->browserArr()[1]);
  clean();
  EXPECT_TRUE(model_->failures().empty());
  EXPECT_EQ(rowsIn(path(".config/chromium/Default/History"), "urls"), 0);
  EXPECT_EQ(rowsIn(path(".config/chromium/Profile 1/History"), "urls"), 0);
  EXPECT_EQ(rowsIn(path(".var/app/org.chromium.Chromium/config/chromium/Default/History"), "urls"),
            2)
      << "it was not ticked";
  EXPECT_EQ(rowsIn(folder_ / "elsewhere/History", "urls"), 4) << "behind a link";
  EXPECT_FALSE(exists(path(".config/chromium/Default/Sessions")));
  EXPECT_TRUE(exists(path(".config/chromium/Default/Preferences")));
  EXPECT_TRUE(exists(path(".config/chromium/Crash Sessions/Session")));
}

TEST_F(DesktopBrowsers, FiftyThousandCachedFilesGoAndWhatChangedSinceStays) {
  install("firefox-esr", "Firefox ESR");
  const std::string profile = ".mozilla/firefox/abc.default-release/";
  const std::string cache =
      folder_.folder(home(".cache/mozilla/firefox/abc.default-release/cache2"));
  for (int i = 0; i < 50'000; ++i) {
    const int file = open((cache + "/" + std::to_string(i)).c_str(), O_CREAT | O_WRONLY, 0600);
    ASSERT_GE(file, 0);
    close(file);
  }
  folder_.file(home(profile + "prefs.js"), "kept");
  folder_.file(home(profile + "cookies.sqlite"), "as it was shown");
  folder_.file(home(profile + "sessionstore-backups/recovery.jsonlz4"));
  scan();
  folder_.file(home(profile + "cookies.sqlite"), "another one by now");
  clean();
  EXPECT_FALSE(exists(cache));
  EXPECT_FALSE(exists(path(profile + "sessionstore-backups")));
  EXPECT_EQ(contentOf(path(profile + "cookies.sqlite")), "another one by now");
  ASSERT_EQ(model_->failures().size(), 1U);
  EXPECT_EQ(model_->failures()[0].kind, "Cookies");
  EXPECT_NE(sizeOf(0, "Cookies"), "0 byte") << "it is still there";
  EXPECT_EQ(sizeOf(0, "Caches"), "0 byte");
}

TEST_F(DesktopBrowsers, OneThatRunsByThenIsReportedAndTheOthersGoOn) {
  install("chromium", "Chromium");
  install("firefox", "Firefox");
  install("brave-browser", "Brave");
  makeHistory(path(".config/chromium/Default/History"), 3);
  makeHistory(path(".config/BraveSoftware/Brave-Browser/Default/History"), 3);
  makePlaces(path(".mozilla/firefox/x.y/places.sqlite"), 3);
  folder_.file(home(".mozilla/firefox/x.y/prefs.js"));
  scan();
  folder_.link(home(".config/chromium/SingletonLock"), "host-" + std::to_string(getpid()));
  folder_.link(home(".config/BraveSoftware/Brave-Browser/SingletonLock"), "host-999999999");
  const std::string lockFile = folder_.file(home(".mozilla/firefox/x.y/.parentlock"));
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t firefox = fork();
  if (firefox == 0) {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    const bool isHeld = fcntl(open(lockFile.c_str(), O_RDWR), F_SETLK, &lock) == 0;
    if (write(ready[1], isHeld ? "y" : "n", 1) == 1) pause();
    _exit(0);
  }
  char answer = 0;
  ASSERT_EQ(read(ready[0], &answer, 1), 1);
  ASSERT_EQ(answer, 'y');
  clean();
  kill(firefox, SIGKILL);
  waitpid(firefox, nullptr, 0);
  close(ready[0]);
  close(ready[1]);
  EXPECT_EQ(rowsIn(path(".config/chromium/Default/History"), "urls"), 3);
  EXPECT_EQ(rowsIn(path(".mozilla/firefox/x.y/places.sqlite"), "moz_historyvisits"), 3);
  EXPECT_EQ(rowsIn(path(".config/BraveSoftware/Brave-Browser/Default/History"), "urls"), 0)
      << "a link that a crash left behind";
  const auto& failures = model_->failures();
  ASSERT_EQ(failures.size(), 12U) << "six kinds of two browsers";
  EXPECT_THAT(failures[0].reason, HasSubstr("Firefox is running"));
  EXPECT_THAT(failures[6].reason, HasSubstr("Chromium is running"));
  EXPECT_EQ(sizeOf(1, "Browsing History"), "3 Items");
}

TEST_F(DesktopBrowsers, RunningOnesAreKnownByTheirDesktopEntry) {
  install("firefox-esr", "Firefox ESR");
  workspace_->applications = {{"org.gnome.Calculator", "org.gnome.Calculator", "", "", 1},
                              {"firefox-esr", "firefox-esr", "", "", 1}};
  EXPECT_EQ(RunningBrowsers::beforeScan(desktopBrowserRules()).names, "Firefox");
  scan();
  EXPECT_EQ(RunningBrowsers::beforeCleaning(model_->browserArr()).names, "Firefox ESR");
  model_->selectBrower(model_->browserArr()[0]);
  EXPECT_TRUE(RunningBrowsers::beforeCleaning(model_->browserArr()).isEmpty());
}

}  // namespace
}  // namespace brisko::test
