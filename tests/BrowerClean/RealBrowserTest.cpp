// What the browsers of this machine really write, cleaned and opened by them again.

#include "BrowserProfiles.h"
#include "HostTools.h"
#include "TestHost.h"
#include "ToGetDB.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include <unistd.h>

namespace brisko::test {
namespace {

bool isInstalled(const char* program) {
  return access(program, X_OK) == 0;
}

/// Ends a browser that hangs; none of them should take that long.
HostTools::Outcome runFor(std::chrono::seconds time, const std::vector<std::string>& arguments) {
  const auto end = std::chrono::steady_clock::now() + time;
  return HostTools::run(arguments, 1u << 20,
                        [end] { return std::chrono::steady_clock::now() > end; });
}

HostTools::Outcome runChromium(const std::string& profile) {
  return runFor(std::chrono::seconds(60),
                {"/usr/bin/chromium", "--headless", "--no-sandbox", "--disable-gpu",
                 "--disable-quic", "--no-first-run", "--disable-background-networking",
                 "--disable-component-update", "--disable-sync", "--user-data-dir=" + profile,
                 "--dump-dom", "data:text/html,<p>opened</p>"});
}

TEST(RealBrowser, ChromiumOpensItsProfileAgainAfterCleaning) {
  if (!isInstalled("/usr/bin/chromium")) GTEST_SKIP() << "chromium is not installed";
  const TemporaryFolder folder;
  const Environment home("HOME", folder.path().c_str());
  const std::string profile = folder / "profile";
  const auto first = runChromium(profile);
  if (first.output.find("opened") == std::string::npos) {
    GTEST_SKIP() << "chromium does not run here: status " << first.status;
  }
  const std::string data = profile + "/Default/";
  const ToGetDB& databases = ToGetDB::returnToGetDB();
  const int visited = databases.getGoogleHistoryItems(data + "History").rows;
  OtherConnection(data + "History")
      .run(std::string("INSERT INTO urls(url, title, last_visit_time) VALUES('https://") + kSecret +
           "', 'x', 1)");
  EXPECT_EQ(databases.getGoogleHistoryItems(data + "History").rows, visited + 1);
  for (const auto& count : {databases.getGoogleDownloadItems(data + "History"),
                            databases.getGoogleCookiesItems(data + "Cookies"),
                            databases.getGooglePasswordItems(data + "Login Data")}) {
    EXPECT_EQ(count.reason, "");
  }
  EXPECT_EQ(databases.toDeleteHistoryWith(data + "History"), "");
  EXPECT_EQ(databases.toDeleteDownloadWith(data + "History"), "");
  EXPECT_EQ(databases.toDeleteGoogleCookiesWith(data + "Cookies"), "");
  EXPECT_EQ(databases.toDeletePasswordWith(data + "Login Data"), "");
  EXPECT_THAT(contentOf(data + "History"), testing::Not(testing::HasSubstr(kSecret)));
  EXPECT_THAT(runChromium(profile).output, testing::HasSubstr("opened"));
  for (const char* name : {"History", "Cookies", "Login Data"})
    EXPECT_EQ(integrityOf(data + name), "ok") << name;
}

HostTools::Outcome runFirefox(const std::string& profile, const std::string& picture) {
  return runFor(std::chrono::seconds(90),
                {"/usr/bin/firefox-esr", "--headless", "--no-remote", "--profile", profile,
                 "--screenshot", picture, "data:text/html,<p>opened</p>"});
}

TEST(RealBrowser, FirefoxOpensItsProfileAgainAfterCleaning) {
  if (!isInstalled("/usr/bin/firefox-esr")) GTEST_SKIP() << "firefox-esr is not installed";
  const TemporaryFolder folder;
  const Environment home("HOME", folder.path().c_str());
  const std::string profile = folder.folder("profile");
  runFirefox(profile, folder / "first.png");
  if (!exists(folder / "first.png")) GTEST_SKIP() << "firefox-esr does not run here";
  const std::string places = profile + "/places.sqlite";
  OtherConnection(places).run(std::string("INSERT INTO moz_annos(place_id, content) VALUES(1, '") +
                              kSecret + "')");
  const ToGetDB& databases = ToGetDB::returnToGetDB();
  EXPECT_EQ(databases.getFirefoxDownloadItmes(places).rows, 1);
  EXPECT_EQ(databases.firefoxDeleteHistoryWith(places), "");
  EXPECT_EQ(databases.firefoxDeleteDownloadWith(places), "");
  EXPECT_EQ(databases.firefoxDeletePasswordWith(places), "");
  EXPECT_THAT(contentOf(places), testing::Not(testing::HasSubstr(kSecret)));
  const int bookmarks = rowsIn(places, "moz_bookmarks");
  EXPECT_GT(bookmarks, 0);
  runFirefox(profile, folder / "second.png");
  EXPECT_TRUE(exists(folder / "second.png"));
  EXPECT_EQ(integrityOf(places), "ok");
  EXPECT_EQ(rowsIn(places, "moz_bookmarks"), bookmarks);
  EXPECT_FALSE(exists(profile + "/places.sqlite.corrupt"));
}

}  // namespace
}  // namespace brisko::test
