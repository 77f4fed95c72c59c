#include "FakeWorkspace.h"
#include "TCDiskVolums.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace brisko {
namespace {

using Place = MountedVolume::Place;

MountedVolume volume(const std::string& root, Place place, bool isEjectable) {
  MountedVolume made;
  made.root = root;
  made.name = root;
  made.totalBytes = 2'000'000'000;
  made.freeBytes = 500'000'000;
  made.place = place;
  made.isEjectable = isEjectable;
  return made;
}

TEST(TCDiskVolums, KindsAndEjectRulesFollowThePlaceOfEachVolume) {
  test::TestHost host;
  auto workspace = std::make_unique<test::FakeWorkspace>();
  workspace->volumes = {volume("/", Place::fixed, false),
                        volume("/Volumes/usb", Place::externalBus, false),
                        volume("/Volumes/disc", Place::optical, true),
                        volume("/Volumes/stuck", Place::optical, false),
                        volume("/Volumes/share", Place::network, false),
                        volume("/Volumes/card", Place::removable, true)};
  test::FakeWorkspace& session = *workspace;
  host.host().workspace = std::move(workspace);

  TCDiskVolums enumerator;
  const auto& details = enumerator.allDiskVolums();
  std::string seen;
  for (const TCVolumDetail& detail : details) {
    seen += detail.volRootDir + ":" + std::to_string(detail.volType) +
            (detail.bCanEject ? "e" : "-") + (detail.bIsDefaultVol ? "d " : " ");
  }
  EXPECT_EQ(seen, "/:1-d /Volumes/usb:2e /Volumes/disc:3e /Volumes/share:4e /Volumes/card:5e ");
  EXPECT_EQ(details[0].totalSpace, "2.00 GB");
  EXPECT_EQ(details[0].freeSpace, "500.00 MB");

  session.volumes.resize(1);
  EXPECT_EQ(enumerator.allDiskVolums().size(), 1U) << "it looks again each time";
}

}  // namespace
}  // namespace brisko
