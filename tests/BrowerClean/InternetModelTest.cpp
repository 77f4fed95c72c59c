#include "InternetFixture.h"
#include "PropertyList.h"

#include <sys/wait.h>
#include <unistd.h>

namespace brisko::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;
using Strings = std::vector<std::string>;

/// Browsers that are bundles, below a root.
class BundleBrowsers : public InternetFixture, public InternetModelListener {
 protected:
  BundleBrowsers() {
    model_->setListener(this);
    model_->setCloseQuestion([this](const std::string& text) {
      questions_.push_back(text);
      return closes_;
    });
    model_->setAccessNotice([this] { ++notices_; });
  }

  std::string application(const std::string& name) {
    return folder_.folder("Applications/" + name + ".app");
  }
  std::string library(const std::string& path) const { return home("Library/" + path); }
  void cleaningEnded() override { ++ended_; }

  Strings questions_;
  bool closes_ = false;
  int notices_ = 0;
  int ended_ = 0;
};

const char* const kChrome = "Users/anna/Library/Application Support/Google/Chrome/Default/";
const char* const kFirefox = "Users/anna/Library/Application Support/Firefox/Profiles/";
const char* const kOpera = "Users/anna/Library/Application Support/com.operasoftware.Opera/";

TEST_F(BundleBrowsers, AreFoundInOrderAndShowWhatTheyKeep) {
  application("Google Chrome");
  application("Safari");
  application("Tools/Firefox");
  application("Tools/My Firefox Opera");
  folder_.link("Applications/Loop", folder_.path());
  makeHistory(folder_ / (kChrome + std::string("History")), 7);
  makeLogins(folder_ / (kChrome + std::string("Login Data")), 0);
  folder_.sizedFile(kChrome + std::string("Sessions/Tabs"), 900);
  folder_.sizedFile(kChrome + std::string("Last Session"), 100);
  folder_.sizedFile(library("Caches/Google/Chrome/Default/Cache/f"), 2500);
  makePlaces(folder_ / (kFirefox + std::string("abc.default-release/places.sqlite")), 5);
  scan();
  Strings names;
  for (const auto& each : model_->browserArr())
    names.push_back(each->name);
  EXPECT_THAT(names, ElementsAre("Google Chrome", "Safari", "Firefox", "My Firefox Opera",
                                 "My Firefox Opera"));
  EXPECT_EQ(sizeOf("Google Chrome", "Browsing History"), "7 Items");
  EXPECT_EQ(sizeOf("Google Chrome", "Save Password"), "0 Item");
  EXPECT_EQ(sizeOf("Google Chrome", "Session"), "1.00 KB");
  EXPECT_EQ(sizeOf("Google Chrome", "Caches"), "2.50 KB");
  EXPECT_EQ(sizeOf("Google Chrome", "Cookies"), "0 Item");
  EXPECT_TRUE(host_.logged("打开数据库失败！")) << "there is no database of cookies";
  EXPECT_EQ(sizeOf("Firefox", "Browsing History"), "0 byte") << "only \".default\" counts";
  EXPECT_EQ(browser("Google Chrome")->isSelect, 1);
  EXPECT_EQ(browser("Safari")->isSelect, 0);
  EXPECT_EQ(kind("Safari", "Caches")->isSelect, 0);
  EXPECT_EQ(kind("Google Chrome", "Cookies")->urlStr,
            "/Users/%@/Library/Application Support/Google/Chrome/Default/Cookies");
  EXPECT_EQ(model_->mainButton().title, "Clean");
  EXPECT_TRUE(model_->mainButton().enabled);
  EXPECT_TRUE(questions_.empty());
}

TEST_F(BundleBrowsers, TickedKindsAreErasedEachInItsWay) {
  for (const char* name : {"Google Chrome", "Firefox", "Opera"})
    application(name);
  const std::string profile = folder_ / (kFirefox + std::string("x.default"));
  makeHistory(folder_ / (kChrome + std::string("History")), 30);
  makeCookies(folder_ / (kChrome + std::string("Cookies")), 30);
  makeLogins(folder_ / (kChrome + std::string("Login Data")), 3);
  folder_.file(kChrome + std::string("Session Storage/1"), "gone");
  makePlaces(profile + "/places.sqlite", 8);
  folder_.file(kFirefox + std::string("x.default/cookies.sqlite"), "c");
  folder_.file(kFirefox + std::string("x.default/cookies.sqlite-wal"), "w");
  folder_.file(library("Caches/Firefox/Profiles/x.default/cache2/entries/A"), "gone");
  makeHistory(folder_ / (kOpera + std::string("History")), 4);
  scan();
  model_->selectBrower(kind("Google Chrome", "Download History"));
  EXPECT_THAT(model_->losses(),
              UnorderedElementsAre(HasSubstr("3 saved passwords of Google Chrome will be lost"),
                                   HasSubstr("Firefox"), HasSubstr("searches of Opera")));
  clean();
  EXPECT_TRUE(model_->failures().empty());
  EXPECT_EQ(ended_, 1);
  const std::string history = folder_ / (kChrome + std::string("History"));
  EXPECT_EQ(rowsIn(history, "urls"), 0);
  EXPECT_EQ(rowsIn(history, "downloads"), 30) << "it was not ticked";
  EXPECT_EQ(rowsIn(folder_ / (kChrome + std::string("Cookies")), "cookies"), 0);
  EXPECT_EQ(rowsIn(folder_ / (kChrome + std::string("Login Data")), "logins"), 0);
  EXPECT_FALSE(exists(folder_ / (kChrome + std::string("Session Storage"))));
  for (const char* table : {"moz_historyvisits", "moz_annos", "moz_keywords"})
    EXPECT_EQ(rowsIn(profile + "/places.sqlite", table), 0) << table;
  EXPECT_FALSE(exists(profile + "/cookies.sqlite") || exists(profile + "/cookies.sqlite-wal"));
  EXPECT_FALSE(exists(folder_ / library("Caches/Firefox/Profiles/x.default/cache2")));
  const std::string opera = folder_ / (kOpera + std::string("History"));
  for (const char* table : {"urls", "visits", "keyword_search_terms", "downloads_url_chains"})
    EXPECT_EQ(rowsIn(opera, table), 0) << table;
  EXPECT_EQ(sizeOf("Google Chrome", "Browsing History"), "0 Item");
  EXPECT_EQ(sizeOf("Google Chrome", "Session"), "0 byte");
  EXPECT_EQ(sizeOf("Firefox", "Browsing History"), "0 Item");
  EXPECT_EQ(sizeOf("Firefox", "Cookies"), "0 byte");
  EXPECT_EQ(browser("Opera")->isSelect, 0);
  EXPECT_FALSE(model_->mainButton().enabled);
}

TEST_F(BundleBrowsers, SafariIsCountedAndCleanedItsOwnWay) {
  application("Safari");
  const std::string safari = "Users/anna/Library/Safari/";
  makeSafariHistory(folder_ / (safari + "History.db"), 1);
  PropertyList(PropertyList::Dictionary{{"DownloadHistory", PropertyList::Array{"a", "b"}}})
      .writeInPlace(folder_.file(safari + "Downloads.plist"));
  for (const char* path :
       {"Safari/LocalStorage/a", "Safari/LocalStorage/b", "WebKit/LocalStorage/c"})
    folder_.file(library(path));
  folder_.sizedFile(library("Caches/Metadata/m"), 400);
  folder_.sizedFile(library("Caches/com.apple.Safari/s"), 600);
  folder_.file(library("Caches/com.apple.mail/kept"));
  scan();
  EXPECT_FALSE(model_->mainButton().enabled) << "nothing is ticked";
  EXPECT_EQ(sizeOf("Safari", "Browsing History"), "1 Items");
  EXPECT_EQ(sizeOf("Safari", "Downloads History"), "2 Items");
  EXPECT_EQ(sizeOf("Safari", "Cookies"), "3 Items");
  EXPECT_EQ(sizeOf("Safari", "Caches"), "1.00 KB");
  folder_.file(safari + "RecentlyClosedTabs.plist");
  model_->backHomeButtonAction();
  EXPECT_EQ(model_->mainButton().title, "Scan");
  scan();
  EXPECT_EQ(sizeOf("Safari", "Browsing History"), "2 Items");
  model_->selectBrower(browser("Safari"));
  clean();
  EXPECT_TRUE(model_->failures().empty());
  EXPECT_EQ(rowsIn(folder_ / (safari + "History.db"), "history_items"), 0);
  for (const char* gone :
       {"Safari/RecentlyClosedTabs.plist", "Safari/Downloads.plist", "Safari/LocalStorage",
        "WebKit/LocalStorage", "Caches/Metadata", "Caches/com.apple.Safari"}) {
    EXPECT_FALSE(exists(folder_ / library(gone))) << gone;
  }
  EXPECT_TRUE(exists(folder_ / library("Caches/com.apple.mail/kept")));
  EXPECT_EQ(sizeOf("Safari", "Cookies"), "3 Items") << "the old count stays shown";
  EXPECT_EQ(sizeOf("Safari", "Browsing History"), "0 Item");
  EXPECT_EQ(notices_, 0);
}

TEST_F(BundleBrowsers, SafariWithoutAccessIsLeftAloneAndTheOthersAreCleaned) {
  application("Safari");
  application("Opera");
  folder_.file(library("Caches/com.apple.Safari/s"));
  makeHistory(folder_ / (kOpera + std::string("History")), 4);
  scan();
  model_->selectBrower(browser("Safari"));
  clean();
  EXPECT_EQ(notices_, 1);
  EXPECT_TRUE(exists(folder_ / library("Caches/com.apple.Safari/s")));
  EXPECT_EQ(rowsIn(folder_ / (kOpera + std::string("History")), "urls"), 0);
  ASSERT_FALSE(model_->failures().empty());
  EXPECT_EQ(model_->failures()[0].browser, "Safari");
}

TEST_F(BundleBrowsers, RunningOnesAreNamedAndClosedOnlyWithLeave) {
  application("Opera");
  makeHistory(folder_ / (kOpera + std::string("History")), 4);
  const pid_t process = fork();
  if (process == 0) {
    execl("/bin/sleep", "sleep", "60", nullptr);
    _exit(1);
  }
  workspace_->applications = {{"", "Safari Technology Preview", "", "", process},
                              {"", "Opera Mini", "", "", 1},
                              {"", "Firefox", "", "", process}};
  model_->checkOpenBrower();
  EXPECT_EQ(model_->indePage(), Page::start) << "it was not to be closed";
  EXPECT_THAT(questions_, ElementsAre("Please close your Safari Technology Preview,Firefox browser "
                                      "to start clean!"));
  EXPECT_THAT(model_->allOpenId(), ElementsAre(process, process));
  EXPECT_EQ(waitpid(process, nullptr, WNOHANG), 0);
  workspace_->applications.clear();
  scan();
  workspace_->applications = {{"", "Firefox", "", "", 1}, {"", "Opera", "", "", process}};
  clean();
  EXPECT_EQ(rowsIn(folder_ / (kOpera + std::string("History")), "urls"), 4);
  EXPECT_EQ(questions_.back(), "Please close your Opera browser to start clean!");
  closes_ = true;
  workspace_->ended = {process};
  clean();
  EXPECT_EQ(waitpid(process, nullptr, WNOHANG), 0) << "the number is another process's by now";
  workspace_->ended.clear();
  model_->selectBrower(browser("Opera"));
  model_->cleanButtonAction();
  int status = 0;
  ASSERT_EQ(waitpid(process, &status, 0), process);
  EXPECT_EQ(WTERMSIG(status), SIGTERM);
  workspace_->setApplications({});
  Dispatch::runUntil([&] { return model_->isCanClick(); });
  EXPECT_EQ(rowsIn(folder_ / (kOpera + std::string("History")), "urls"), 0);
}

TEST_F(BundleBrowsers, ProgressWaitsAtNinetyFiveForTheEnd) {
  model_->checkOpenBrower();
  EXPECT_EQ(model_->indePage(), Page::scanning);
  for (int i = 0; i < 200; ++i)
    model_->raiseProgress();
  EXPECT_EQ(model_->proValue(), 95);
  EXPECT_DOUBLE_EQ(model_->mainButton().percentage, 0.95);
  model_->backHomeButtonAction();
  Dispatch::waitForBackground();
  Dispatch::runPending();
  EXPECT_EQ(model_->indePage(), Page::start) << "the result of a scan that was left";
}

}  // namespace
}  // namespace brisko::test
