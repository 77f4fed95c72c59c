#include "CommUti.h"
#include "GetXcodeJunks.h"
#include "JunkTestHost.h"
#include "MadeImage.h"
#include "TemporaryFolder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::UnorderedElementsAre;

std::vector<std::string> folderPaths(int category) {
  std::vector<std::string> paths;
  CommUti::folderPath(category, paths);
  return paths;
}

TEST(JunkLocations, standInTheirOrder) {
  TemporaryFolder folder;
  JunkTestHost host(folder.path());
  const std::string& root = folder.path();
  const std::string home = folder / "Users/anna";
  EXPECT_THAT(folderPaths(0), ElementsAre(root + "/Library/Caches", home + "/Library/Caches",
                                          root + "/Library/Logs", home + "/Library/Logs",
                                          root + "/private/var/log"));
  EXPECT_THAT(folderPaths(2),
              ElementsAre(home + "/Library/Containers/com.apple.mail/Data/Library/Mail Downloads"));
  EXPECT_THAT(folderPaths(3), ElementsAre(home + "/Library/Application Support/MobileSync/Backup"));
  const std::string developer = home + "/Library/Developer";
  EXPECT_THAT(GetXcodeJunks::getXcodeJunks(),
              ElementsAre(developer + "/Xcode/DerivedData", developer + "/Xcode/Archives",
                          developer + "/Xcode/Products/", developer + "/CoreSimulator/Devices/",
                          developer + "/Xcode/iOS DeviceSupport", developer + "/XCPGDevices/"));
}

TEST(JunkLocations, everyItemOfAContainersCachesIsOneAndIsLogged) {
  TemporaryFolder folder;
  JunkTestHost host(folder.path());
  const std::string containers = "Users/anna/Library/Containers/";
  const std::string web = folder.folder(containers + "a.app/Data/Library/Caches/Web");
  const std::string file = folder.file(containers + "a.app/Data/Library/Caches/plain.db");
  folder.folder(containers + "b.app/Data");
  // Leads to a cache folder that is none of this container's.
  folder.folder("elsewhere/Data/Library/Caches/private");
  folder.link(containers + "c.app", folder / "elsewhere");
  folder.folder(containers + "d.app/Data");
  folder.link(containers + "d.app/Data/Library", folder / "elsewhere/Data/Library");
  EXPECT_THAT(folderPaths(1), UnorderedElementsAre(web, file));
  EXPECT_TRUE(host.logged("-------" + web));
  EXPECT_TRUE(host.logged("-------" + file));
}

TEST(JunkLocations, trashOfVolumesComesFirstAndOnlyOfThoseInTheVolumesFolder) {
  TemporaryFolder folder;
  JunkTestHost host(folder.path());
  MountedVolume stick;
  stick.root = folder / "Volumes/Stick";
  MountedVolume other;
  other.root = "/mnt/backup";
  host.workspace().volumes = {other, stick};
  folder.folder("Volumes/Stick");
  folder.folder("Volumes/Image");
  folder.link("Volumes/Boot", "/");
  const std::string documents = "Users/anna/Library/Mobile Documents/";
  folder.folder(documents + "with/.Trash");
  folder.folder(documents + "without");
  folder.file(documents + "file");
  EXPECT_THAT(folderPaths(4),
              ElementsAre(fmt::format("{}/Volumes/Stick/.Trashes/{}", folder.path(), getuid()),
                          fmt::format("{}/Volumes/Image/.Trashes/{}", folder.path(), getuid()),
                          folder / "Users/anna/.Trash", folder / (documents + "with/.Trash")));
}

TEST(JunkScan, findsEverythingOfTheMadeImageAndNothingElse) {
  TemporaryFolder folder;
  JunkTestHost host(folder.path());
  const MadeImage image = MadeImage::build(folder.path());
  Scan scan;
  EXPECT_THAT(scan.reports, ElementsAre(0, 1, 2, 3, 4, 5));
  EXPECT_THAT(scan.titles(0),
              UnorderedElementsAre("com.example.fonts", "com.example.updates",
                                   "com.example.browser", "com.example.maps", ".hidden-cache",
                                   "DiagnosticReports", "Sync", "system.log.0.gz", "install.log"));
  EXPECT_THAT(scan.titles(1), ElementsAre("Media", "NetworkCache", "256"));
  EXPECT_THAT(scan.titles(2), ElementsAre("A1", "B2"));
  EXPECT_THAT(scan.titles(3), ElementsAre("00008030-1"));
  EXPECT_THAT(scan.titles(4),
              ElementsAre("draft.txt", "letter.pages", "holiday.zip", "old video.mov"));
  EXPECT_THAT(scan.titles(5), ElementsAre("App.app", "2026-10-01", "App-abc", "D1"));

  const TCTreeNode& system = *scan.nodes[0];
  EXPECT_EQ(system.title, "System Junk");
  EXPECT_EQ(system.image, "ic_systema");
  EXPECT_EQ(system.size, CommUti::convertVolSpace(system.logicalBytes));
  const TCTreeNode& biggest = *system.detailChildren.back();
  EXPECT_EQ(biggest.path, image.home + "/Library/Caches/com.example.browser");
  EXPECT_EQ(biggest.logicalBytes, 696'400'000U) << "the whole tree below it";
  EXPECT_EQ(biggest.size, "696.40 MB");
  EXPECT_EQ(biggest.selectState, 1);
  ASSERT_TRUE(biggest.identity);
  EXPECT_EQ(scan.nodes[3]->detailChildren[0]->selectState, 0);
  EXPECT_EQ(scan.nodes[5]->detailChildren[0]->path,
            image.home + "/Library/Developer/Xcode/Products//App.app")
      << "the doubled separator stays";
  EXPECT_TRUE(scan.scanner.skipped().empty());
}

// The order is defined by sorting after each entry; it must be what one sort at the end gives.
TEST(JunkScan, sortsByTheSizeAsShownWhateverTheOrderOfFinding) {
  TemporaryFolder folder;
  JunkTestHost host(folder.path());
  std::mt19937 random(3);
  for (int i = 0; i < 300; ++i) {
    folder.sizedFile(fmt::format("Library/Logs/f{}", i),
                     random() % 3 == 0 ? random() % 300 : random() % 5'000'000);
  }
  Scan scan;
  const TCTreeNode& node = *scan.nodes[0];
  ASSERT_EQ(node.children.size(), 300U);
  std::vector<const TCTreeNode*> inserted;
  for (const std::string& path : node.children) {
    const auto found = std::find_if(node.detailChildren.begin(), node.detailChildren.end(),
                                    [&](const auto& entry) { return entry->path == path; });
    inserted.push_back(found->get());
    std::stable_sort(inserted.begin(), inserted.end(), [](const auto* a, const auto* b) {
      return CommUti::volSpaceFromString(a->size) < CommUti::volSpaceFromString(b->size);
    });
  }
  for (std::size_t i = 0; i < inserted.size(); ++i) {
    ASSERT_EQ(node.detailChildren[i].get(), inserted[i]) << i;
  }
}

TEST(JunkScan, oddLocationsListAsNothingAndNeverHang) {
  TemporaryFolder folder;
  JunkTestHost host(folder.path());
  folder.file("Library/Caches", "a file where a folder is expected");
  fs::create_directories(folder / "Users/anna/Library");
  ASSERT_EQ(mkfifo((folder / "Users/anna/Library/Caches").c_str(), 0600), 0);
  folder.file("precious/file");
  folder.link("Library/Logs", folder / "precious");
  folder.link("Users/anna/Library/Logs", folder / "Users/anna/Library/Logs");
  Scan scan;
  EXPECT_TRUE(scan.nodes[0]->detailChildren.empty());
  EXPECT_EQ(scan.nodes[0]->size, "0.00 KB");
  const auto skipped = scan.scanner.skipped();
  ASSERT_EQ(skipped.size(), 2U) << "the links, which somebody may wonder about";
  EXPECT_EQ(skipped[0].path, folder / "Library/Logs");
  EXPECT_EQ(skipped[0].reason, "It is a symbolic link");
}

TEST(JunkScan, oddEntriesAreCountedAsWhatTheyAre) {
  TemporaryFolder folder;
  JunkTestHost host(folder.path());
  const std::string caches = "Users/anna/Library/Caches/";
  folder.folder(caches + "loop");
  folder.link(caches + "loop/again", folder / (caches + "loop"));
  ASSERT_EQ(mkfifo((folder / (caches + "pipe")).c_str(), 0600), 0);
  folder.sizedFile("big", 50'000'000);
  folder.link(caches + "link", folder / "big");
  const std::string hostile = "quote'\"\n\xFF\xFE$(reboot)";
  folder.sizedFile(caches + hostile, 1500);
  Scan scan;
  EXPECT_THAT(scan.titles(0), UnorderedElementsAre("loop", "pipe", "link", hostile));
  EXPECT_LT(scan.nodes[0]->logicalBytes, 10'000U) << "no link's target is counted";
}

TEST(JunkScan, namesWhatItMayNotReadAndGoesOn) {
  if (geteuid() == 0) {
    GTEST_SKIP() << "because root may read everything; the terminal's tests do it as a user";
  }
  TemporaryFolder folder;
  JunkTestHost host(folder.path());
  folder.sizedFile("Library/Logs/readable", 5000);
  folder.folder("Library/Caches");
  fs::permissions(folder / "Library/Caches", fs::perms::none);
  Scan scan;
  EXPECT_THAT(scan.titles(0), ElementsAre("readable"));
  ASSERT_EQ(scan.scanner.skipped().size(), 1U);
  EXPECT_EQ(scan.scanner.skipped()[0].path, folder / "Library/Caches");
}

TEST(JunkScan, aStopLetsTheCategoryEndAndReportsTheRestAsEmpty) {
  TemporaryFolder folder;
  JunkTestHost host(folder.path());
  MadeImage::build(folder.path());
  FastCleanScanFile scanner;
  // Stopped before it begins, as by a quick second press: nothing is looked at, all is reported.
  std::vector<std::string> sizes;
  auto nodes = scanner.getAllList();
  scanner.setProgressSEL(
      [&](int category) { sizes.push_back(nodes[static_cast<std::size_t>(category)]->size); });
  scanner.prepareScan();
  scanner.setBeStop(true);
  scanner.runScan();
  Dispatch::runPending();
  EXPECT_EQ(sizes, std::vector<std::string>(6, "0.00 KB"));

  // The request does not outlive the scan it was for.
  scanner.setBeStop(true);
  sizes.clear();
  nodes = scanner.getAllList();
  scanner.beginScan();
  Dispatch::runPending();
  ASSERT_EQ(sizes.size(), 6U);
  EXPECT_NE(sizes[0], "0.00 KB");
}

TEST(JunkScan, reportsOfAScanThatWasReplacedAreDropped) {
  TemporaryFolder folder;
  JunkTestHost host(folder.path());
  MadeImage::build(folder.path());
  FastCleanScanFile scanner;
  int reports = 0;
  scanner.setProgressSEL([&](int) { ++reports; });
  scanner.getAllList();
  scanner.beginScan();
  const auto nodes = scanner.getAllList();
  Dispatch::runPending();
  EXPECT_EQ(reports, 0);
  EXPECT_TRUE(nodes[0]->detailChildren.empty());
}

TEST(JunkScan, entriesThatVanishMeanwhileAreNoMatter) {
  TemporaryFolder folder;
  JunkTestHost host(folder.path());
  for (int i = 0; i < 300; ++i)
    folder.file(fmt::format("Library/Logs/d{}/f", i), "text");
  FastCleanScanFile scanner;
  const auto nodes = scanner.getAllList();
  scanner.prepareScan();
  Dispatch::global([&] { scanner.runScan(); });
  for (int i = 0; i < 300; ++i)
    fs::remove_all(folder / fmt::format("Library/Logs/d{}", i));
  Dispatch::waitForBackground();
  Dispatch::runPending();
  EXPECT_EQ(nodes[0]->children.size(), nodes[0]->detailChildren.size());
}

}  // namespace
}  // namespace brisko::test
