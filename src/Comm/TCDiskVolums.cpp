#include "TCDiskVolums.h"

namespace brisko {

const std::vector<TCVolumDetail>& TCDiskVolums::allDiskVolums() { return volumes_; }

}  // namespace brisko
