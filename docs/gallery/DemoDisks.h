#pragma once

#include "MadeDiskHost.h"

#include <string>

namespace brisko::test {

/// Three disks with their volumes, always the same, as the disk tool would describe them; drives
/// that answer but for the last. While it lives, the disk tool is its own.
class DemoDisks {
 public:
  /// Below the demo's root.
  explicit DemoDisks(const std::string& root);
  ~DemoDisks();
  DemoDisks(const DemoDisks&) = delete;
  DemoDisks& operator=(const DemoDisks&) = delete;

 private:
  std::string root_;
  MadeDiskHost host_;
};

/// Makes the places in which the volumes are mounted, which a cleared root has lost.
void mountDemoDisks(const std::string& root);

}  // namespace brisko::test
