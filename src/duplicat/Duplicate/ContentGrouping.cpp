#include "ContentGrouping.h"

#include "RadixSort.h"
#include "SystemLog.h"
#include "crc.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <utility>

namespace brisko {
namespace {

// Files up to this size are read whole at once: opening a file again costs more than reading it.
constexpr std::uint64_t kFirstPiece = 16 * 1024;
constexpr std::size_t kPieceBuffer = 256 * 1024;  // two of them fit into a processor's own cache
constexpr std::uint64_t kEndPiece = 4096;
// From here on files are streamed: few at a time, the longest first.
constexpr std::uint64_t kStreamed = std::uint64_t{1} << 20;
constexpr unsigned kStreams = 4;
constexpr std::uint64_t kGrowth = 16;

bool isOneFile(const Candidate& a, const Candidate& b) {
  return a.inode == b.inode && a.folder->device == b.folder->device && a.fileSize == b.fileSize &&
         !a.isLink && !b.isLink;
}

}  // namespace

// Which files to read, and which are the same file under another name.
struct ContentGrouping::ReadPlan {
  // In the order of reading: the place in live_, below what it was sorted by. Eight bytes each,
  // because all candidates may be in it.
  std::vector<std::uint64_t> tasks;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> sameFile;  // other name, name that is read

  std::uint32_t index(std::size_t at) const { return static_cast<std::uint32_t>(tasks[at]); }
};

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

// Sorts what is to be read by `place`; what comes out equal keeps its order. Of places that lie
// further apart than 32 bits can tell, the lowest bits do not count.
template <typename Place>
void ContentGrouping::sortTasks(std::vector<std::uint64_t>& tasks, Place place) {
  std::uint64_t lowest = ~std::uint64_t{0};
  std::uint64_t highest = 0;
  for (Member& member : live_) {
    member.key = place(candidate(member));
    lowest = std::min(lowest, member.key);
    highest = std::max(highest, member.key);
  }
  const int width = lowest > highest ? 0 : std::bit_width(highest - lowest);
  const int unused = std::max(0, width - 32);
  for (std::uint64_t& task : tasks) {
    const auto index = static_cast<std::uint32_t>(task);
    task = (live_[index].key - lowest) >> unused << 32 | index;
  }
  radixSort(tasks, [](std::uint64_t task) { return task >> 32; });
}

ContentGrouping::ReadPlan ContentGrouping::planReading(std::uint64_t from) {
  ReadPlan plan;
  plan.tasks.resize(live_.size());
  std::iota(plan.tasks.begin(), plan.tasks.end(), std::uint64_t{0});
  sortTasks(plan.tasks, [](const Candidate& file) { return file.inode; });
  if (from >= kStreamed) {
    sortTasks(plan.tasks, [](const Candidate& file) { return ~file.fileSize; });
  }
  std::size_t kept = 0;
  for (std::size_t at = 0; at < plan.tasks.size(); ++at) {
    if (kept > 0 && plan.tasks[kept - 1] >> 32 == plan.tasks[at] >> 32 &&
        isOneFile(candidate(live_[plan.index(kept - 1)]), candidate(live_[plan.index(at)]))) {
      plan.sameFile.emplace_back(plan.index(at), plan.index(kept - 1));
    } else {
      plan.tasks[kept++] = plan.tasks[at];
    }
  }
  plan.tasks.resize(kept);
  return plan;
}

// Has `work(reader, member, manyInFolder)` open each live file and read what it needs; false, or a
// stop, leaves the candidate incomplete.
template <typename Work>
void ContentGrouping::readAll(std::uint64_t from, std::size_t bufferSize, Work work) {
  if (live_.empty()) return;
  const ReadPlan plan = planReading(from);
  const bool isStreamed = from >= kStreamed;
  const std::size_t atATime = isStreamed ? 1 : 16;
  for (Member& member : live_)
    member.isIncomplete = 1;
  std::atomic<std::size_t> next = 0;
  const auto readOne = [&](CandidateReader& reader, std::size_t at) {
    Member& member = live_[plan.index(at)];
    Candidate& file = candidate(member);
    const bool manyInFolder =
        at + 1 < plan.tasks.size() && candidate(live_[plan.index(at + 1)]).folder == file.folder;
    const bool isRead = work(reader, member, manyInFolder);
    reader.close();
    member.isIncomplete = isRead ? 0 : 1;
  };
  const auto body = [&](ReaderCrew::Member& thread) {
    CandidateReader reader(bufferSize);
    for (std::size_t at = next.fetch_add(atATime); at < plan.tasks.size() && !stop_;
         at = next.fetch_add(atATime)) {
      currentPath_.offer([&] { return CandidateStore::path(candidate(live_[plan.index(at)])); });
      const std::size_t end = std::min(at + atATime, plan.tasks.size());
      for (std::size_t i = at; i < end && !stop_; ++i) {
        readOne(reader, i);
        thread.unitDone();
      }
    }
  };
  ReaderCrew crew;
  crew.run((plan.tasks.size() + atATime - 1) / atATime,
           isStreamed ? kStreams : ReaderCrew::kMaximum, body, ReaderCrew::Descriptors::own);
  // Not by the readers, which cannot reach the log.
  for (std::size_t at = 0; at < plan.tasks.size(); ++at) {
    const Member& member = live_[plan.index(at)];
    if (member.isIncomplete == 0 || stop_) continue;
    SystemLog::line("open file failed:{}", CandidateStore::path(candidate(member)));
  }
  for (const auto& [other, read] : plan.sameFile) {
    const Candidate& source = candidate(live_[read]);
    Candidate& same = candidate(live_[other]);
    same.md5 = source.md5;
    same.md5_1k = source.md5_1k;
    live_[other].key = live_[read].key;
    live_[other].isIncomplete = live_[read].isIncomplete;
  }
}

void ContentGrouping::readFirstPieces() {
  readAll(0, kFirstPiece + 1, [this](CandidateReader& reader, Member& member, bool manyInFolder) {
    Candidate& file = candidate(member);
    const bool isWhole = file.fileSize <= kFirstPiece;
    std::span<const unsigned char> bytes;
    if (isWhole) {
      bytes = reader.readWhole(file, manyInFolder);
    } else if (reader.open(file, manyInFolder)) {
      bytes = reader.read(0, kFirstPiece);
    }
    if (bytes.empty()) return false;
    const std::size_t head = std::min(bytes.size(), RestOfBuffer::kLength);
    file.md5_1k = crc::update(crc::kStart, bytes.data(), head);
    file.md5 = crc::update(file.md5_1k, bytes.data() + head, bytes.size() - head);
    member.key = file.md5;
    if (isWhole) countOut(member);
    return true;
  });
  noteSizeClasses();
  refineByKeys();
  for (Member& member : live_)
    member.key = candidate(member).md5_1k;
  refineByKeys();
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

// Of long files that agree so far, many differ at their ends already.
void ContentGrouping::compareEnds() {
  readAll(kStreamed, kEndPiece, [this](CandidateReader& reader, Member& member, bool manyInFolder) {
    if (!reader.open(candidate(member), manyInFolder)) return false;
    const auto bytes = reader.read(candidate(member).fileSize - kEndPiece, kEndPiece);
    member.key = crc::update(crc::kStart, bytes.data(), bytes.size());
    return !bytes.empty();
  });
  refineByKeys();
}

void ContentGrouping::readOn(std::uint64_t from, std::uint64_t to) {
  readAll(from, kPieceBuffer,
          [this, from, to](CandidateReader& reader, Member& member, bool manyInFolder) {
            Candidate& file = candidate(member);
            if (!reader.open(file, manyInFolder)) return false;
            if (!reader.digest(from, std::min(file.fileSize, to), stop_, file.md5)) return false;
            member.key = file.md5;
            if (file.fileSize <= to) countOut(member);
            return true;
          });
  refineByKeys();
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
