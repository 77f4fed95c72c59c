#pragma once

#include "DiskOffers.h"
#include "DiskTree.h"
#include "Json.h"

#include <string>
#include <vector>

namespace brisko {

/// What was attached and mounted when it was looked at.
struct DiskListing {
  DiskTree tree;
  std::vector<MountedVolume> mounted;

  /// Ends early when the user interrupts it: what was found until then is not all.
  static DiskListing take();

  /// What the disk tool complained about, on standard error, a line each.
  void writeComplaints() const;

  /// The node with this identifier, or null after one line on standard error: that there is none,
  /// or why there are no disks at all. Where disk and volume have the same one, `prefersVolume`
  /// decides.
  DiskNode nodeNamed(const std::string& id, bool prefersVolume) const;
  DiskOffers offersFor(const DiskAndVolumeObj& node) const;
};

/// The fields of a node, with its children.
Json diskJson(const DiskAndVolumeObj& node);

/// All disks as a document: {"disks":[…]}.
Json disksDocument(const DiskListing& listing);
/// One node: its fields, what is shown of it, and what is offered. A disk that is its own volume
/// has that volume's detail beside its own.
Json diskDocument(const DiskListing& listing, const DiskAndVolumeObj& node);

std::string disksText(const DiskListing& listing);
std::string diskText(const DiskListing& listing, const DiskAndVolumeObj& node);

}  // namespace brisko
