#pragma once

#include "DuplicateCopies.h"
#include "DuplicateModel.h"

#include <atomic>
#include <cstddef>
#include <mutex>
#include <utility>
#include <vector>

namespace brisko {

/// One removal, shared by the page and its worker. The worker touches no tree: what it needs was
/// copied before.
struct DuplicateModel::Removal {
  struct Item {
    SimpleTreeNode* leaf;  ///< for the main thread only
    std::size_t group;
    std::size_t copy;
  };
  struct Outcome {
    SimpleTreeNode* leaf;
    DuplicateRemoval removal;
  };

  std::vector<Item> items;                         ///< in the order of ticking
  std::vector<std::vector<DuplicateCopy>> groups;  ///< in each, what is not ticked first
  std::atomic<bool> stop = false;

  DuplicateModel* model = nullptr;  ///< null once the page is gone; main thread only

  std::mutex mutex;  ///< guards what follows
  std::vector<Outcome> outcomes;
  std::string pathAtWork;
};

}  // namespace brisko
