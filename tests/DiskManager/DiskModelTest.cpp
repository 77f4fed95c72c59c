#include "DiskModel.h"
#include "DiskTestHost.h"
#include "Dispatch.h"
#include "NSNotificationCenter.h"
#include "WatchMountUnmount.h"

#include <algorithm>

namespace brisko::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

struct Listener : DiskModelListener {
  std::vector<std::string> failures;
  int formats = 0;
  DiskCommandEnd end;
  void operationFailed(const std::string& what, const std::string& reason) override {
    failures.push_back(what + " " + reason);
  }
  void formatEnded(const FormatPlan&, const DiskCommandEnd& given) override {
    ++formats;
    end = given;
  }
  void reformatFailed(const FormatPlan&, const DiskCommandEnd& given) override { end = given; }
};

class DiskModelTest : public DiskTest {
 protected:
  DiskModelTest() {
    auto stick = MadeDisks::volume("Stick", 4 * kGiB);
    stick["Ejectable"] = true;
    auto drive = MadeDisks::disk("Stick Drive", 8 * kGiB);
    drive["Ejectable"] = true;
    disks.setDetails("disk0s1", MadeDisks::volume("System", 90 * kGiB));
    disks.setDetails("disk1s1", stick);
    disks.setDetails("disk1s2", stick);
    disks.addDisk("disk0", MadeDisks::disk("Inner", 100 * kGiB), {"disk0s1"});
    disks.addDisk("disk1", drive, {"disk1s1", "disk1s2"});
    mount("System");
    mount("Stick");
    model.setListener(&listener);
  }
  ~DiskModelTest() override {
    model.setListener(nullptr);
    Dispatch::waitForBackground();
  }
  void scan() {
    model.getDiskInfo();
    settle();
  }
  /// The stick's first volume, selected and about to be formatted, as one of this type.
  PropertyList::Dictionary ask(const char* type) {
    auto asked = MadeDisks::volume("Stick", 4 * kGiB);
    asked["FilesystemName"] = type;
    disks.setDetails("disk1s1", asked);
    scan();
    model.shouldSelectItem(node("disk1s1"));
    EXPECT_TRUE(model.beginFormat());
    listener.formats = 0;
    return asked;
  }
  void format(const char* name, const char* type) {
    model.makeSureToFormatSelectVolumeWithName(name, type);
    EXPECT_FALSE(model.isCanClick());
    Dispatch::runUntil([this] { return listener.formats == 1; });
  }
  void settle() {
    Dispatch::runUntil([this] { return !model.isScan() && model.isCanClick(); });
  }
  DiskNode node(const char* id) {
    const DiskNode disk = diskWithId(model.allDiskArr(), id);
    return disk ? disk : volumeWithId(model.allDiskArr(), id);
  }

  Listener listener;
  DiskModel model;
};

TEST_F(DiskModelTest, aRebuildAsksOnceAndKeepsTheUsersChoice) {
  model.getDiskInfo();
  model.getDiskInfo();  // dropped
  settle();
  const auto calls = disks.calls();
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "<list><-plist>"), 1);
  EXPECT_EQ(model.selectVolumes(), node("disk0")) << "the first disk, to begin with";
  EXPECT_TRUE(model.shouldSelectItem(node("disk1s2")));
  scan();
  EXPECT_EQ(model.selectVolumes(), node("disk1s2"));
  EXPECT_FALSE(model.offers().format && model.isSystemVolume(*model.selectVolumes()));
}

TEST_F(DiskModelTest, aMountRebuildsTheTree) {
  const WatchMountUnmount watch;
  std::vector<std::string> roots;
  const int token = NSNotificationCenter::defaultCenter().addObserver(
      "BKVolumeMount", [&](const NSNotification& notice) {
        EXPECT_EQ(notice.sender, &watch);
        roots.push_back(std::any_cast<MountedVolume>(notice.userInfo).root);
      });
  MountedVolume volume;
  volume.root = "/Volumes/New";
  workspace->mount(volume);
  NSNotificationCenter::defaultCenter().removeObserver(token);
  workspace->mount(volume);
  EXPECT_THAT(roots, ElementsAre("/Volumes/New"));
}

TEST_F(DiskModelTest, aRenameLocksTheSelectionAndShowsTheNewName) {
  scan();
  model.shouldSelectItem(node("disk1s1"));
  EXPECT_FALSE(model.rename(" "));
  EXPECT_FALSE(model.rename(std::string(200, 'x')));
  EXPECT_THAT(model.renameRefusal(std::string(200, 'x')), HasSubstr("200 characters, and 99 fit"));
  mount("Other");  // the folder takes the new name too
  EXPECT_TRUE(model.rename("Other"));
  EXPECT_FALSE(model.shouldSelectItem(node("disk0")));
  EXPECT_FALSE(model.isCanClick());
  settle();
  EXPECT_THAT(disks.calls(), Contains("<rename><1234-ABCD><Other>"));
  EXPECT_EQ(node("disk1s1")->volumeName, "Other");
  EXPECT_TRUE(listener.failures.empty());
  // With a look under way, its answers may be from before; then there is another one.
  model.getDiskInfo();
  EXPECT_TRUE(model.rename("Third"));
  settle();
  EXPECT_EQ(node("disk1s1")->volumeName, "Stick") << "as the tool says";
  disks.setAction("rename", "echo 'read-only' >&2; exit 1");
  EXPECT_TRUE(model.rename("Other"));
  settle();
  EXPECT_THAT(listener.failures, ElementsAre("\"Stick\" could not be renamed. read-only\n"));
  EXPECT_EQ(node("disk1s1")->volumeName, "Stick") << "it comes back";
}

TEST_F(DiskModelTest, ejectingADiskEjectsItsVolumesInOrder) {
  const auto ejected = [this] {
    std::vector<std::string> calls;
    for (const std::string& call : disks.calls())
      if (call.starts_with("<eject>")) calls.push_back(call);
    return calls;
  };
  scan();
  model.shouldSelectItem(node("disk0"));
  model.EjectVolumes();
  EXPECT_TRUE(model.isCanClick()) << "not offered";
  disks.setAction("eject", "echo 'files are open' >&2; exit 1");
  model.shouldSelectItem(node("disk1"));
  model.EjectVolumes();
  settle();
  EXPECT_THAT(ejected(), ElementsAre("<eject></dev/disk1s1>", "<eject></dev/disk1s2>"));
  EXPECT_THAT(listener.failures,
              ElementsAre("\"Stick\", \"Stick\" could not be ejected. files are open\n"));
  // The first takes the whole disk along: nothing is left to be ejected or complained of.
  disks.setAction("eject",
                  "rm " + disks.detailsFile("disk1s1") + " " + disks.detailsFile("disk1s2"));
  model.EjectVolumes();
  settle();
  EXPECT_EQ(ejected().size(), 3U);
  EXPECT_EQ(listener.failures.size(), 1U);
}

TEST_F(DiskModelTest, whileAFormatIsAskedForNothingElseHappens) {
  scan();
  model.shouldSelectItem(node("disk0s1"));
  EXPECT_FALSE(model.beginFormat()) << "the first volume of the first disk";
  ask("ExFAT");
  EXPECT_FALSE(model.beginFormat());
  EXPECT_FALSE(model.rename("Other"));
  model.EjectVolumes();
  disks.setAction("eraseVolume", "echo 'it is gone' >&2; exit 1");
  format("", "ExFAT");
  EXPECT_EQ(listener.end.status, 1);
  model.endFormat();
  EXPECT_TRUE(model.isCanClick());
  EXPECT_FALSE(model.isFormat());
  const auto calls = disks.calls();
  EXPECT_EQ(calls.back(), "<eraseVolume><ExFAT><NEW></dev/disk1s1>");
}

TEST_F(DiskModelTest, onlyTheVolumeThatWasAskedAboutIsFormatted) {
  for (const char* type : {"ExFAT", "APFS", "NTFS"}) {
    auto asked = ask(type);
    // Another stick in its place; the page is told, and selects something else.
    asked["VolumeUUID"] = "ANOTHER";
    disks.setDetails("disk1s1", asked);
    model.shouldSelectItem(node("disk1s2"));
    format("NEW", "ExFAT");
    EXPECT_NE(listener.end.status, 0);
    EXPECT_THAT(listener.end.errors, HasSubstr("not the volume"));
    model.endFormat();
  }
  for (const std::string& call : disks.calls())
    EXPECT_FALSE(call.starts_with("<erase") || call.starts_with("<reformat>")) << call;
}

TEST_F(DiskModelTest, aTaskThatNobodyWaitsForTellsItsFailureLater) {
  disks.setAction("reformat", "echo 'nothing makes it' >&2; exit 1");
  ask("APFS");
  format("", "");
  EXPECT_EQ(listener.end.status, 0) << "started";
  model.endFormat();
  Dispatch::runUntil([this] { return listener.end.status != 0; });
  EXPECT_EQ(listener.end.errors, "nothing makes it\n");
  settle();
}

TEST_F(DiskModelTest, theSelectedDisksHealthIsShown) {
  const auto drive = smart->add("disk0");
  drive->nvme = true;
  drive->health = {41, 12'345, 678};
  scan();
  Dispatch::runUntil([this] { return model.health().state() != DiskHealth::State::reading; });
  EXPECT_EQ(model.health().state(), DiskHealth::State::shown);
  EXPECT_EQ(model.health().temperature(), "41 °C");
  EXPECT_EQ(model.health().powerOnHours(), "12,345");
  EXPECT_EQ(model.health().powerCycles(), "678");
  // Another drive may have taken the name meanwhile.
  drive->health.temperature = 20;
  scan();
  Dispatch::runUntil([this] { return model.health().temperature() == "20 °C"; });
  model.shouldSelectItem(node("disk0s1"));
  EXPECT_EQ(model.health().state(), DiskHealth::State::hidden);
  model.shouldSelectItem(node("disk1"));
  Dispatch::runUntil([this] { return model.health().state() != DiskHealth::State::reading; });
  EXPECT_EQ(model.health().state(), DiskHealth::State::silent);
  EXPECT_THAT(model.health().explanation(), HasSubstr("does not report"));
}

}  // namespace
}  // namespace brisko::test
