#include "ContentGrouping.h"

#include "SystemLog.h"
#include "crc.h"

#include <algorithm>
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

}  // namespace

// Which files to read, and which are the same file under another name.
struct ContentGrouping::ReadPlan {
  struct Task {
    std::uint64_t place;  // ascending on the disk, or descending in length
    std::uint64_t inode;
    std::uint32_t index;  // in live_
  };
  std::vector<Task> tasks;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> sameFile;  // other name, name that is read
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
  if (!stop_) {
    for (Candidate* candidate : store_.inOrder)
      countOut(*candidate);
  }
  return copies;
}

void ContentGrouping::countOut(Candidate& candidate) {
  if (std::exchange(candidate.isCounted, true)) return;
  progress_.decide();
}

void ContentGrouping::splitBySize() {
  live_.reserve(store_.inOrder.size());
  for (std::uint32_t i = 0; i < store_.inOrder.size(); ++i)
    live_.push_back({0, i, 0});
  refine([](const Candidate& candidate) { return candidate.fileSize; });
  live_.shrink_to_fit();
}

template <typename Key>
void ContentGrouping::refine(Key key) {
  for (Member& member : live_)
    member.key = key(candidate(member));
  refineByKeys();
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
        std::partition(first, last, [this](const Member& m) { return !candidate(m).isIncomplete; });
    std::for_each(complete, last, [this](const Member& m) { countOut(candidate(m)); });
    // All of one size, or with one first piece, is what large classes often are.
    if (!std::is_sorted(first, complete, isBefore)) std::sort(first, complete, isBefore);
    for (auto run = first; run != complete;) {
      const auto end = std::find_if(run, complete,
                                    [value = run->key](const Member& m) { return m.key != value; });
      if (end - run == 1) {
        countOut(candidate(*run));
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
  const auto isFinished = [&](const Member& m) { return candidate(m).fileSize <= readTo; };
  const auto rest = std::stable_partition(live_.begin(), live_.end(),
                                          [&](const Member& m) { return !isFinished(m); });
  finished_.insert(finished_.end(), rest, live_.end());
  live_.erase(rest, live_.end());
}

ContentGrouping::ReadPlan ContentGrouping::planReading(std::uint64_t from) const {
  ReadPlan plan;
  plan.tasks.reserve(live_.size());
  for (std::uint32_t i = 0; i < live_.size(); ++i) {
    const Candidate& file = candidate(live_[i]);
    const std::uint64_t place = from < kStreamed ? file.inode : ~file.fileSize;
    plan.tasks.push_back({place, file.inode, i});
  }
  std::sort(plan.tasks.begin(), plan.tasks.end(),
            [](const ReadPlan::Task& a, const ReadPlan::Task& b) {
              return a.place != b.place ? a.place < b.place : a.inode < b.inode;
            });
  auto kept = plan.tasks.begin();
  for (const ReadPlan::Task& task : plan.tasks) {
    if (kept != plan.tasks.begin()) {
      const Candidate& read = candidate(live_[(kept - 1)->index]);
      const Candidate& file = candidate(live_[task.index]);
      if (read.inode == file.inode && read.folder->device == file.folder->device &&
          read.fileSize == file.fileSize && !read.isLink && !file.isLink) {
        plan.sameFile.emplace_back(task.index, (kept - 1)->index);
        continue;
      }
    }
    *kept++ = task;
  }
  plan.tasks.erase(kept, plan.tasks.end());
  return plan;
}

// Opens each live file and has `work(reader, member)` read what it needs; false, or a stop, leaves
// the candidate incomplete.
template <typename Work>
void ContentGrouping::readAll(std::uint64_t from, std::size_t bufferSize, Work work) {
  if (live_.empty()) return;
  const ReadPlan plan = planReading(from);
  const bool isStreamed = from >= kStreamed;
  const std::size_t atATime = isStreamed ? 1 : 16;
  for (const Member& member : live_)
    candidate(member).isIncomplete = true;
  std::atomic<std::size_t> next = 0;
  const auto readOne = [&](CandidateReader& reader, std::size_t at) {
    Member& member = live_[plan.tasks[at].index];
    Candidate& file = candidate(member);
    const bool manyInFolder = at + 1 < plan.tasks.size() &&
                              candidate(live_[plan.tasks[at + 1].index]).folder == file.folder;
    const bool isRead = reader.open(file, manyInFolder) && work(reader, member);
    reader.close();
    file.isIncomplete = !isRead;
    if (!isRead && !stop_) SystemLog::line("open file failed:{}", CandidateStore::path(file));
  };
  ReaderCrew crew;
  crew.run((plan.tasks.size() + atATime - 1) / atATime,
           isStreamed ? kStreams : ReaderCrew::kMaximum, [&](ReaderCrew::Member& thread) {
             CandidateReader reader(bufferSize);
             for (std::size_t at = next.fetch_add(atATime); at < plan.tasks.size() && !stop_;
                  at = next.fetch_add(atATime)) {
               currentPath_.offer(
                   [&] { return CandidateStore::path(candidate(live_[plan.tasks[at].index])); });
               const std::size_t end = std::min(at + atATime, plan.tasks.size());
               for (std::size_t i = at; i < end && !stop_; ++i) {
                 readOne(reader, i);
                 thread.unitDone();
               }
             }
           });
  for (const auto& [other, read] : plan.sameFile) {
    const Candidate& source = candidate(live_[read]);
    Candidate& same = candidate(live_[other]);
    same.md5 = source.md5;
    same.md5_1k = source.md5_1k;
    same.isIncomplete = source.isIncomplete;
    live_[other].key = live_[read].key;
  }
}

void ContentGrouping::readFirstPieces() {
  readAll(0, kFirstPiece, [this](CandidateReader& reader, Member& member) {
    Candidate& file = candidate(member);
    const std::size_t length = std::min(file.fileSize, kFirstPiece);
    const auto bytes = reader.read(0, length);
    if (bytes.empty()) return false;
    const std::size_t head = std::min(length, RestOfBuffer::kLength);
    file.md5_1k = crc::update(crc::kStart, bytes.data(), head);
    file.md5 = crc::update(file.md5_1k, bytes.data() + head, length - head);
    if (file.fileSize <= kFirstPiece) countOut(file);
    return true;
  });
  noteSizeClasses();
  refine([](const Candidate& file) { return file.md5; });
  refine([](const Candidate& file) { return file.md5_1k; });
}

// A class is read in the turn of its first member that can be read and has another one behind it.
void ContentGrouping::noteSizeClasses() {
  for (auto first = live_.begin(); first != live_.end();) {
    const auto last = std::find_if(
        first, live_.end(), [id = first->classId](const Member& m) { return m.classId != id; });
    const auto isRead = [this](const Member& m) { return !candidate(m).isIncomplete; };
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
  readAll(kStreamed, kEndPiece, [this](CandidateReader& reader, Member& member) {
    const auto bytes = reader.read(candidate(member).fileSize - kEndPiece, kEndPiece);
    member.key = crc::update(crc::kStart, bytes.data(), bytes.size());
    return !bytes.empty();
  });
  refineByKeys();
}

void ContentGrouping::readOn(std::uint64_t from, std::uint64_t to) {
  readAll(from, kPieceBuffer, [this, from, to](CandidateReader& reader, Member& member) {
    Candidate& file = candidate(member);
    if (!reader.digest(from, std::min(file.fileSize, to), stop_, file.md5)) return false;
    if (file.fileSize <= to) countOut(file);
    return true;
  });
  refine([](const Candidate& file) { return file.md5; });
}

std::vector<Candidate*> ContentGrouping::inGroupOrder() {
  using Span = std::pair<std::size_t, std::size_t>;
  std::vector<Span> classes;
  for (std::size_t first = 0, last = 0; first < finished_.size(); first = last) {
    while (last < finished_.size() && finished_[last].classId == finished_[first].classId)
      ++last;
    classes.emplace_back(first, last);
  }
  std::sort(classes.begin(), classes.end(), [this](const Span& a, const Span& b) {
    return finished_[a.first].order < finished_[b.first].order;
  });
  std::vector<Candidate*> copies;
  copies.reserve(finished_.size());
  for (const auto& [first, last] : classes) {
    for (std::size_t i = first + 1; i < last; ++i)
      copies.push_back(&candidate(finished_[i]));
    copies.push_back(&candidate(finished_[first]));
  }
  return copies;
}

}  // namespace brisko
