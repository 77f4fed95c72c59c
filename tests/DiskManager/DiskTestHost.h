#pragma once

#include "FakeWorkspace.h"
#include "MadeDiskHost.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace brisko::test {

/// A host with made disks, made volumes and made drives.
class DiskTest : public testing::Test {
 protected:
  DiskTest() {
    auto session = std::make_unique<FakeWorkspace>();
    workspace = session.get();
    Host::current().workspace = std::move(session);
  }

  /// A place in the folder of mounted volumes, as if the volume were mounted there.
  void mount(const std::string& name, const char* type = "exfat") {
    MountedVolume volume;
    volume.root = root.folder("Volumes/" + name);
    volume.fileSystemName = type;
    volume.device = "/dev/" + name;
    workspace->volumes.push_back(volume);
  }

  static constexpr std::uint64_t kGiB = 1'073'741'824;

  TemporaryFolder root;
  TestHost host{root.path()};
  MadeDiskHost made{root.folder("disks")};
  MadeDisks& disks = made.disks;
  FakeSmartDevice* smart = made.smart;
  FakeWorkspace* workspace = nullptr;
};

}  // namespace brisko::test
