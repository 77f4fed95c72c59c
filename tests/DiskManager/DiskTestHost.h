#pragma once

#include "FakeSmartDevice.h"
#include "FakeWorkspace.h"
#include "Host.h"
#include "MadeDisks.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace brisko::test {

/// A host with made disks, made volumes and made drives.
class DiskTest : public testing::Test {
 protected:
  DiskTest() : host(root.path()), disks(root.folder("disks")) {
    tools_ = std::make_unique<Environment>("BRISKO_TOOLS", disks.tools().c_str());
    runtime_ = std::make_unique<Environment>("XDG_RUNTIME_DIR", disks.runtime().c_str());
    auto made = std::make_unique<FakeWorkspace>();
    workspace = made.get();
    Host::current().workspace = std::move(made);
    auto registry = std::make_unique<FakeSmartDevice>();
    smart = registry.get();
    Host::current().smartDevice = std::move(registry);
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
  TestHost host;
  MadeDisks disks;
  FakeWorkspace* workspace = nullptr;
  FakeSmartDevice* smart = nullptr;

 private:
  std::unique_ptr<Environment> tools_;
  std::unique_ptr<Environment> runtime_;
};

}  // namespace brisko::test
