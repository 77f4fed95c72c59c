#pragma once

#include "AMAppItem.h"
#include "RelatedAppFilesScanner.h"

#include <string>
#include <vector>

namespace brisko {

class InstalledNames;
struct LaunchedApplication;

/// One chosen item with everything that would go with it: a top-level row of the review.
struct ReviewGroup {
  AppItem item;      ///< as the list has it
  AppItems entries;  ///< the item itself first
  std::string title;
  std::string refusal;     ///< why the item itself must stay; empty when it may go
  bool isRunning = false;  ///< it is open at this moment
  bool isReady = false;    ///< its entries have been looked for
};

/// Looks for what belongs to `item` and what else would go with it. Blocks, and may start the
/// host's package manager for a dry run: for background threads.
///
/// Entries of the library locations start ticked, whoever else they may belong to. Of the host's
/// own locations those start unticked that also fit another installed application, that fit by the
/// shown name alone or in the middle of a word, those that may not be removed, and all of an
/// application that must stay.
ReviewGroup makeReviewGroup(const AppItem& item, const InstalledNames& names,
                            const std::vector<LaunchedApplication>& running, SizeTime sizes);

}  // namespace brisko
