#include "ContentGrouping.h"

#include "RadixSort.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace brisko {
namespace {

constexpr std::uint64_t kGrowth = 16;

}  // namespace

ContentGrouping::ContentGrouping(CandidateStore& store, const std::atomic<bool>& stop,
                                 SearchProgress& progress, CurrentPath& currentPath)
    : store_(store), stop_(stop), progress_(progress), currentPath_(currentPath) {}

std::vector<Candidate*> ContentGrouping::run() {
  progress_.begin(store_.inOrder.size());
  splitBySize();
  readFirstPieces();
  takeFinished(kFirstPiece);
  readOn(kFirstPiece, kStreamed);
  takeFinished(kStreamed);
  compareEnds();
  for (std::uint64_t from = kStreamed; !live_.empty(); from *= kGrowth) {
    readOn(from, from * kGrowth);
    takeFinished(from * kGrowth);
  }
  std::vector<Candidate*> copies = inGroupOrder();
  restOfBuffer_.complete(copies);
  if (!stop_) progress_.decideAll();
  return copies;
}

void ContentGrouping::countOut(Member& member) {
  if (member.isCounted != 0) return;
  member.isCounted = 1;
  progress_.decide();
}

void ContentGrouping::splitBySize() {
  live_.resize(store_.inOrder.size());
  for (std::uint32_t i = 0; i < live_.size(); ++i) {
    live_[i].order = i;
    live_[i].key = store_.inOrder[i]->fileSize;
  }
  radixSort(live_, [](const Member& member) { return member.key; });
  refineByKeys();
  live_.shrink_to_fit();
}

// Splits each class by its members' keys; what is alone then, or incomplete, drops out.
void ContentGrouping::refineByKeys() {
  const auto isBefore = [](const Member& a, const Member& b) {
    return a.key != b.key ? a.key < b.key : a.order < b.order;
  };
  auto kept = live_.begin();
  for (auto first = live_.begin(); first != live_.end();) {
    const std::uint32_t id = first->classId;
    auto last = std::find_if(first, live_.end(), [id](const Member& m) { return m.classId != id; });
    const auto complete =
        std::partition(first, last, [](const Member& m) { return m.isIncomplete == 0; });
    std::for_each(complete, last, [this](Member& m) { countOut(m); });
    // All of one size, or with one first piece, is what large classes often are.
    if (!std::is_sorted(first, complete, isBefore)) std::sort(first, complete, isBefore);
    for (auto run = first; run != complete;) {
      const auto end = std::find_if(run, complete,
                                    [value = run->key](const Member& m) { return m.key != value; });
      if (end - run == 1) {
        countOut(*run);
      } else {
        std::for_each(run, end, [this](Member& m) { m.classId = nextClassId_; });
        ++nextClassId_;
        kept = std::move(run, end, kept);
      }
      run = end;
    }
    first = last;
  }
  live_.erase(kept, live_.end());
}

void ContentGrouping::takeFinished(std::uint64_t readTo) {
  auto kept = live_.begin();
  for (auto first = live_.begin(), last = first; first != live_.end(); first = last) {
    last = std::find_if(first, live_.end(),
                        [id = first->classId](const Member& m) { return m.classId != id; });
    // Files of one class have one size.
    if (candidate(*first).fileSize <= readTo) {
      finished_.insert(finished_.end(), first, last);
    } else {
      kept = std::move(first, last, kept);
    }
  }
  live_.erase(kept, live_.end());
}

// A class is read in the turn of its first member that can be read and has another one behind it.
void ContentGrouping::noteSizeClasses() {
  for (auto first = live_.begin(); first != live_.end();) {
    const auto last = std::find_if(
        first, live_.end(), [id = first->classId](const Member& m) { return m.classId != id; });
    const auto isRead = [](const Member& m) { return m.isIncomplete == 0; };
    const auto head = std::find_if(first, last - 1, isRead);
    if (head != last - 1) {
      const auto end =
          std::find_if(std::reverse_iterator(last), std::reverse_iterator(head), isRead);
      const Candidate* lastRead =
          end == std::reverse_iterator(head) ? &candidate(*head) : &candidate(*end);
      restOfBuffer_.addClass(candidate(*head).fileSize, head->order, lastRead);
    }
    first = last;
  }
}

std::vector<Candidate*> ContentGrouping::inGroupOrder() {
  using Span = std::pair<std::size_t, std::size_t>;
  std::vector<Span> classes;
  for (std::size_t first = 0, last = 0; first < finished_.size(); first = last) {
    while (last < finished_.size() && finished_[last].classId == finished_[first].classId)
      ++last;
    classes.emplace_back(first, last);
  }
  radixSort(classes, [this](const Span& each) { return finished_[each.first].order; });
  std::vector<Candidate*> copies;
  copies.reserve(finished_.size());
  for (const auto& [first, last] : classes) {
    for (std::size_t i = first + 1; i < last; ++i)
      copies.push_back(&candidate(finished_[i]));
    copies.push_back(&candidate(finished_[first]));
  }
  finished_ = {};
  live_ = {};
  return copies;
}

}  // namespace brisko
