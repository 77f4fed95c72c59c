#pragma once

#include "TCVolumDetail.h"

#include <vector>

namespace brisko {

/// Enumerates the mounted volumes, one by one, from the file-system layer.
class TCDiskVolums {
 public:
  /// Looks again and returns what is mounted now. Optical volumes that cannot be ejected are left
  /// out.
  const std::vector<TCVolumDetail>& allDiskVolums();

 private:
  std::vector<TCVolumDetail> volumes_;
};

}  // namespace brisko
