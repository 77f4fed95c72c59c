#pragma once

#include "DiskAndVolumeObj.h"
#include "ExecCommand.h"

#include <vector>

namespace brisko {

/// Ejecting a node: it, or where it has some each of its children, in their order.
namespace DiskEject {

struct Ended {
  DiskNode node;
  DiskCommandEnd end;
  /// Looked at afterwards: it is gone, or the tool said that it is done and it is not mounted.
  bool isOut = false;
};

/// What is ejected for `node`.
std::vector<DiskNode> nodesOf(const DiskNode& node);

/// Whether the node's identifier fits into the command.
bool fits(const DiskAndVolumeObj& node);

/// Runs it and waits for its end: not for the main thread. A node that does not fit, or that has
/// gone with one before it, is not asked for.
std::vector<Ended> run(const std::vector<DiskNode>& nodes);

}  // namespace DiskEject

}  // namespace brisko
