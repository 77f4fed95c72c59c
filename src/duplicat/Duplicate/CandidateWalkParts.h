#pragma once

#include "CandidateWalk.h"

#include <atomic>
#include <cstddef>
#include <deque>
#include <memory>
#include <vector>

namespace brisko {

// What one batch of a folder's entries came to: stretches of candidates, each with the folder that
// the listing names after it.
struct CandidateWalk::Segment {
  struct Item {
    Candidate* first = nullptr;
    std::size_t count = 0;
    Folder* folder = nullptr;
  };
  std::vector<Item> items;
};

struct CandidateWalk::Folder {
  CandidateFolder* facts = nullptr;
  // Each on its own: another thread may fill one while the folder is read on.
  std::vector<std::unique_ptr<Segment>> segments;
  bool isBundle = false;  ///< listed as a bundle when it qualifies, and not entered
  bool qualifies = false;
  std::atomic<bool> isLeftOut = false;

  Segment& newSegment() { return *segments.emplace_back(std::make_unique<Segment>()); }
};

// A folder to list or, with a batch, files of it to look at.
struct CandidateWalk::Task {
  Folder* folder = nullptr;
  Handle parent;  ///< null when the folder is to be opened by path
  bool isThroughLink = false;
  Handle handle;
  Segment* segment = nullptr;
  std::unique_ptr<CatalogBatch> batch;
};

struct CandidateWalk::Worker {
  CandidateArena arena;
  std::deque<Folder> folders;  ///< owned here and not by each other: a tree may be very deep
  CatalogBatch batch;
  std::vector<Task> found;
  std::size_t candidates = 0;
};

}  // namespace brisko
