// The reading behind the grouping: which piece of which files, in which order, by how many threads.

#include "ContentGrouping.h"
#include "RadixSort.h"
#include "SystemLog.h"
#include "crc.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <span>
#include <utility>

namespace brisko {
namespace {

constexpr std::size_t kPieceBuffer = 256 * 1024;  // two of them fit into a processor's own cache
constexpr std::uint64_t kEndPiece = 4096;
constexpr unsigned kStreams = 4;

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
  logUnread(plan);
  for (const auto& [other, read] : plan.sameFile)
    takeFromOtherName(live_[other], live_[read]);
}

// Not by the readers, which cannot reach the log.
void ContentGrouping::logUnread(const ReadPlan& plan) const {
  if (stop_) return;
  for (std::size_t at = 0; at < plan.tasks.size(); ++at) {
    const Member& member = live_[plan.index(at)];
    if (member.isIncomplete == 0) continue;
    SystemLog::line("open file failed:{}", CandidateStore::path(candidate(member)));
  }
}

void ContentGrouping::takeFromOtherName(Member& member, const Member& read) {
  const Candidate& source = candidate(read);
  Candidate& same = candidate(member);
  same.md5 = source.md5;
  same.md5_1k = source.md5_1k;
  member.key = read.key;
  member.isIncomplete = read.isIncomplete;
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

}  // namespace brisko
