#pragma once

#include "FakeSmartDevice.h"
#include "Host.h"
#include "MadeDisks.h"
#include "TestHost.h"

#include <memory>
#include <string>

namespace brisko::test {

/// Made disks as this process's own, and made drives: while it lives, the disk tool is theirs.
struct MadeDiskHost {
  explicit MadeDiskHost(std::string folder) : disks(std::move(folder)) {
    auto registry = std::make_unique<FakeSmartDevice>();
    smart = registry.get();
    Host::current().smartDevice = std::move(registry);
  }

  MadeDisks disks;
  FakeSmartDevice* smart = nullptr;
  Environment tools{"BRISKO_TOOLS", disks.tools().c_str()};
  Environment runtime{"XDG_RUNTIME_DIR", disks.runtime().c_str()};
};

}  // namespace brisko::test
