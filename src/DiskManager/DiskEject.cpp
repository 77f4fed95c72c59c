#include "DiskEject.h"

#include "DiskAndVolumeInfo.h"
#include "DiskCommandText.h"
#include "DiskState.h"

#include <utility>

namespace brisko::DiskEject {

std::vector<DiskNode> nodesOf(const DiskNode& node) {
  return node->chrArr.empty() ? std::vector{node} : node->chrArr;
}

bool fits(const DiskAndVolumeObj& node) {
  return DiskCommandText::fits(DiskCommandText::eject(node.diskId), DiskCommandText::kEjectRoom);
}

std::vector<Ended> run(const std::vector<DiskNode>& nodes) {
  std::vector<Ended> all;
  for (const DiskNode& node : nodes) {
    Ended one;
    one.node = node;
    // The first of several volumes may have taken the whole disk with it.
    one.isOut = !all.empty() && DiskState::of("/dev/" + node->diskId).isGone;
    if (!one.isOut && fits(*node)) {
      DiskAndVolumeInfo::ejcDiskWithGuid(node->diskId, &one.end);
      const DiskState after = DiskState::of("/dev/" + node->diskId);
      one.isOut = after.isGone || (one.end.status == 0 && after.isThere && after.mount.empty());
    }
    all.push_back(std::move(one));
  }
  return all;
}

}  // namespace brisko::DiskEject
