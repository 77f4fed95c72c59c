#pragma once

#include "MadeDisks.h"

#include <string>

namespace brisko::test {

/// Three disks with their volumes, always the same, as the disk tool would describe them; drives
/// that answer but for the last. For as long as the program runs.
class DemoDisks {
 public:
  /// Below the demo's root.
  explicit DemoDisks(const std::string& root);
  ~DemoDisks();
  DemoDisks(const DemoDisks&) = delete;
  DemoDisks& operator=(const DemoDisks&) = delete;
  /// Makes the places in which the volumes are mounted, which a cleared root has lost.
  void mount() const;

 private:
  std::string root_;
  MadeDisks disks_;
};

}  // namespace brisko::test
