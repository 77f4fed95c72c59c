#include "InternetFixture.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using Kind = InstalledApplication::Kind;

/// Browsers that the desktop knows.
class DesktopBrowsers : public InternetFixture {
 protected:
  /// Every file below the home with its bytes, and every folder.
  std::map<std::string, std::string> wholeHome() {
    std::map<std::string, std::string> all;
    for (const auto& each : fs::recursive_directory_iterator(path(""))) {
      const std::string name = fs::relative(each.path(), path(""));
      all[name] = each.is_regular_file() ? contentOf(each.path()) : "a folder";
    }
    return all;
  }
  /// The paths of the home that are not as `before` says, but for what lies below another of them.
  std::vector<std::string> changedSince(const std::map<std::string, std::string>& before) {
    const auto now = wholeHome();
    std::vector<std::string> changed;
    for (const auto& [name, bytes] : before) {
      if (!changed.empty() && name.starts_with(changed.back() + "/")) continue;
      const auto found = now.find(name);
      if (found == now.end() || found->second != bytes) changed.push_back(name);
    }
    for (const auto& [name, bytes] : now) {
      if (!before.contains(name)) changed.push_back("new: " + name);
    }
    return changed;
  }
  /// Rows of every table of a database, as "table 3".
  static std::vector<std::string> tablesOf(const std::string& database) {
    OtherConnection open(database);
    std::vector<std::string> counts;
    std::string list = open.value(
        "SELECT group_concat(name, ' ') FROM (SELECT name FROM "
        "sqlite_master WHERE type = 'table' ORDER BY name)");
    for (std::istringstream names(list); names >> list;) {
      counts.push_back(list + " " + open.value("SELECT count(*) FROM " + list));
    }
    return counts;
  }
  /// A profile with what browsers of this family keep in it, beside what is cleaned.
  void fillProfile(const std::string& profile, std::initializer_list<const char*> files) {
    for (const char* name : files)
      folder_.file(home(profile + name), std::string("bytes of ") + name);
  }
};

TEST_F(DesktopBrowsers, NothingButTheTickedKindsChangesInTheWholeHome) {
  install("chromium", "Chromium");
  install("firefox", "Firefox");
  const std::string chromium = ".config/chromium/Default/";
  const std::string firefox = ".mozilla/firefox/x.default/";
  fillProfile(chromium, {"Preferences", "Bookmarks", "Web Data", "Favicons", "Login Data",
                         "Extensions/a/1.0/Session.js", "Local Storage/leveldb/1.ldb", "History-x",
                         "Sessions/Tabs_1", "Session Storage/1.log", "Network/Trust Tokens"});
  fillProfile(firefox, {"prefs.js", "key4.db", "logins.json", "formhistory.sqlite", "storage/a/b",
                        "cookies.sqlite", "cookies.sqlite-wal", "sessionstore.jsonlz4",
                        "sessionstore-backups/recovery.js", "extensions/session.xpi"});
  fillProfile(".config/chromium/", {"Local State", "Crash Reports/Session"});
  fillProfile(".config/other/Default/", {"Cookies", "Preferences", "Sessions/Tabs_1"});
  fillProfile(".cache/", {"chromium/Default/Cache/f", "mozilla/firefox/x.default/cache2/f",
                          "mozilla/firefox/x.default/startupCache/f", "other/cache/f"});
  fillProfile("Documents/", {"Session notes.txt", "cache/list"});
  makeHistory(path(chromium + "History"), 6);
  makeCookies(path(chromium + "Cookies"), 6);
  makePlaces(path(firefox + "places.sqlite"), 6);
  const auto history = tablesOf(path(chromium + "History"));
  const auto places = tablesOf(path(firefox + "places.sqlite"));
  scan();
  const auto before = wholeHome();
  cleanOnly({"Cookies", "Session"});
  EXPECT_TRUE(model_->failures().empty());
  EXPECT_THAT(changedSince(before),
              testing::UnorderedElementsAre(
                  chromium + "Cookies", chromium + "Sessions", chromium + "Session Storage",
                  firefox + "cookies.sqlite", firefox + "cookies.sqlite-wal",
                  firefox + "sessionstore.jsonlz4", firefox + "sessionstore-backups"));
  EXPECT_THAT(tablesOf(path(chromium + "Cookies")), testing::ElementsAre("cookies 0"));
  const auto between = wholeHome();
  cleanOnly({"Browsing History", "Caches"});
  EXPECT_THAT(changedSince(between),
              testing::UnorderedElementsAre(chromium + "History", firefox + "places.sqlite",
                                            ".cache/chromium/Default/Cache",
                                            ".cache/mozilla/firefox/x.default/cache2"));
  const auto emptied = [](std::vector<std::string> tables, const std::string& name) {
    std::replace(tables.begin(), tables.end(), name + " 6", name + " 0");
    return tables;
  };
  EXPECT_EQ(tablesOf(path(chromium + "History")), emptied(history, "urls"));
  EXPECT_EQ(tablesOf(path(firefox + "places.sqlite")), emptied(places, "moz_historyvisits"));
}

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
  scan();
  ASSERT_EQ(model_->browserArr().size(), 2U) << "one row for what is shared";
  EXPECT_EQ(sizeOf("Web Browser", "Browsing History"), "15 Items");
  EXPECT_EQ(sizeOf("Chromium (Flatpak)", "Browsing History"), "2 Items");
  model_->selectBrower(model_->browserArr()[1]);
  clean();
  EXPECT_TRUE(model_->failures().empty());
  EXPECT_EQ(rowsIn(path(".config/chromium/Default/History"), "urls"), 0);
  EXPECT_EQ(rowsIn(path(".config/chromium/Profile 1/History"), "urls"), 0);
  EXPECT_EQ(rowsIn(path(".var/app/org.chromium.Chromium/config/chromium/Default/History"), "urls"),
            2)
      << "it was not ticked";
  EXPECT_EQ(rowsIn(folder_ / "elsewhere/History", "urls"), 4) << "behind a link";
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
  EXPECT_NE(sizeOf("Firefox ESR", "Cookies"), "0 byte") << "it is still there";
  EXPECT_EQ(sizeOf("Firefox ESR", "Caches"), "0 byte");
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
  EXPECT_EQ(sizeOf("Chromium", "Browsing History"), "3 Items");
}

TEST_F(DesktopBrowsers, RunningOnesAreKnownByTheirDesktopEntry) {
  install("firefox-esr", "Firefox ESR");
  scan();
  workspace_->applications = {{"org.gnome.Calculator", "org.gnome.Calculator", "", "", 1},
                              {"firefox-esr", "firefox-esr", "", "", 1}};
  EXPECT_EQ(RunningBrowsers::beforeScan(desktopBrowserRules()).names, "Firefox");
  EXPECT_EQ(RunningBrowsers::beforeCleaning(model_->browserArr()).names, "Firefox ESR");
  model_->selectBrower(model_->browserArr()[0]);
  EXPECT_TRUE(RunningBrowsers::beforeCleaning(model_->browserArr()).isEmpty());
}

}  // namespace
}  // namespace brisko::test
