#pragma once

#include "DuplicateCopies.h"
#include "DuplicateModel.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace brisko {

/// One removal, shared by the page and its worker.
struct DuplicateModel::Removal {
  struct Outcome {
    SimpleTreeNode* leaf;
    std::string path;
    DuplicateRemoval removal;
  };

  std::shared_ptr<const DuplicateResult> result;  ///< no tick changes until the first outcome
  std::atomic<bool> stop = false;

  DuplicateModel* model = nullptr;  ///< null once the page is gone; main thread only

  std::mutex mutex;  ///< guards what follows
  std::vector<Outcome> outcomes;
};

}  // namespace brisko
