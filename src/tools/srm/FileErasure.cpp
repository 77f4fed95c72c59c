#include "FileErasure.h"

#include "ExtendedAttributes.h"
#include "FileExtents.h"
#include "PassWriter.h"
#include "RandomStream.h"
#include "RemovalCalls.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace brisko::srm {
namespace {

constexpr std::uint64_t kLargestBlock = 64 * 1024;  // network file systems call megabytes a block
// A file that grew while it was overwritten has its new end overwritten too, this often.
constexpr int kMostExtensions = 4;
constexpr int kNameTries = 32;
constexpr std::chrono::milliseconds kLeaseWait{20};
constexpr int kLeaseTries = 15;

const RemovalCalls& calls() {
  return RemovalCalls::system();
}

bool isSame(const struct statx& facts, const struct stat& status) {
  return facts.stx_ino == status.st_ino &&
         makedev(facts.stx_dev_major, facts.stx_dev_minor) == status.st_dev;
}

// As long as the one that it takes the place of, and of letters that every file system takes.
std::string meaninglessName(std::size_t length) {
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz012345";
  std::vector<std::byte> random(length);
  if (!systemRandom(random)) return {};
  std::string name;
  for (const std::byte each : random)
    name += kLetters[std::to_integer<std::size_t>(each) % kLetters.size()];
  return name;
}

}  // namespace

FileErasure::FileErasure(EraserRun& run, int folder, std::string name, std::string path)
    : run_(run), folder_(folder), name_(std::move(name)), path_(std::move(path)) {}

FileErasure::~FileErasure() {
  if (modeBefore_) calls().chmod(lifted_.get(), *modeBefore_);
}

FileErasure::Reason FileErasure::erase(const struct statx& facts) {
  if (auto reason = refusal(facts)) return reason;
  if (auto reason = open(facts)) return reason;
  run_.notes().look(file_.get(), path_);
  if (auto reason = overwrite()) return reason;
  if (const int error = eraseExtendedAttributes(file_.get())) {
    return "its extended attributes cannot be overwritten: " + wordsFor(error);
  }
  return takeAway();
}

FileErasure::Reason FileErasure::refusal(const struct statx& facts) const {
  if (facts.stx_nlink > run_.options().names) {
    const unsigned others = facts.stx_nlink - 1;
    return fmt::format("it has {} other {}", others,
                       others == 1 ? "name (a hard link)" : "names (hard links)");
  }
  if ((facts.stx_attributes & STATX_ATTR_IMMUTABLE) != 0) return "it is immutable";
  if ((facts.stx_attributes & STATX_ATTR_APPEND) != 0) return "it can only be appended to";
  return std::nullopt;
}

FileErasure::Reason FileErasure::open(const struct statx& facts) {
  if (isWrittenByOthers()) return "another program has it open for writing";
  constexpr std::uint64_t kFlags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
  file_.reset(openWith(calls(), folder_, name_.c_str(), kFlags, kNoLinksNoMounts));
  if (!file_ && errno == EACCES && liftWriteProtection(facts)) {
    file_.reset(openWith(calls(), folder_, name_.c_str(), kFlags, kNoLinksNoMounts));
  }
  if (!file_) return wordsFor(errno);
  if (::fstat(file_.get(), &status_) != 0) return wordsFor(errno);
  if (!S_ISREG(status_.st_mode) || !isSame(facts, status_)) return wordsFor(ELOOP);
  block_ =
      std::clamp<std::uint64_t>(static_cast<std::uint64_t>(status_.st_blksize), 512, kLargestBlock);
  return std::nullopt;
}

// Through a descriptor that needs no right to the file. The mode goes back when the file stays.
bool FileErasure::liftWriteProtection(const struct statx& facts) {
  FileDescriptor item(
      openWith(calls(), folder_, name_.c_str(), O_PATH | O_NOFOLLOW, kNoLinksNoMounts));
  struct stat status;
  const bool isLifted =
      run_.options().force && item && ::fstat(item.get(), &status) == 0 && isSame(facts, status) &&
      status.st_uid == ::geteuid() &&
      calls().chmod(item.get(), (status.st_mode & 07777) | S_IRUSR | S_IWUSR) == 0;
  if (!isLifted) {
    errno = EACCES;
    return false;
  }
  modeBefore_ = status.st_mode & 07777;
  lifted_ = std::move(item);
  return true;
}

// A lease for reading is granted only while nobody has the file open for writing. Whoever looks
// whether it can be written has it open for a moment, which is waited for. Where leases are unknown
// nothing can be told.
bool FileErasure::isWrittenByOthers() const {
  const FileDescriptor reading(openWith(calls(), folder_, name_.c_str(),
                                        O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY,
                                        kNoLinksNoMounts));
  if (!reading) return false;
  for (int tries = 0; tries < kLeaseTries; ++tries) {
    if (tries > 0) std::this_thread::sleep_for(kLeaseWait);
    if (::fcntl(reading.get(), F_SETLEASE, F_RDLCK) == 0) {
      ::fcntl(reading.get(), F_SETLEASE, F_UNLCK);
      return false;
    }
    if (errno != EAGAIN) return false;
  }
  return true;
}

FileErasure::Reason FileErasure::overwrite() {
  std::uint64_t done = 0;
  for (int extensions = 0; extensions <= kMostExtensions; ++extensions) {
    if (::fstat(file_.get(), &status_) != 0) return wordsFor(errno);
    const auto size = static_cast<std::uint64_t>(status_.st_size);
    if (size <= done) return std::nullopt;
    // To the end of the last block: what lies behind the file's end in it is slack, which may hold
    // parts of an earlier, longer content.
    const std::uint64_t end = (size + block_ - 1) / block_ * block_;
    if (auto reason = overwriteFrom(done / block_ * block_, end)) return reason;
    done = end;
  }
  return "it keeps growing while it is overwritten";
}

FileErasure::Reason FileErasure::overwriteFrom(std::uint64_t begin, std::uint64_t end) {
  const FileExtents extents = FileExtents::of(file_.get(), end, block_);
  run_.notes().look(extents);
  std::vector<Range> ranges = rangesToOverwrite(file_.get(), extents, end);
  for (Range& range : ranges)
    range.begin = std::max(range.begin, begin);
  std::erase_if(ranges, [](const Range& range) { return range.begin >= range.end; });

  const std::vector<Pass> passes = passesOf(run_.options().scheme, run_.options().zero);
  PassWriter writer(file_.get(), end - begin, &EraserRun::isStopped);
  for (std::size_t i = 0; i < passes.size(); ++i) {
    run_.tell(path_,
              fmt::format("pass {} of {}, {}", i + 1, passes.size(), passes[i].description()));
    const int error = writer.write(passes[i], ranges);
    if (error == ECANCELED) return stoppedAt(i, passes.size());
    if (error != 0) {
      return fmt::format("{} ({} of {} passes were made)", wordsFor(error), i, passes.size());
    }
  }
  return std::nullopt;
}

FileErasure::Reason FileErasure::stoppedAt(std::size_t pass, std::size_t passes) const {
  return fmt::format("stopped in pass {} of {}: partly overwritten, not removed", pass + 1, passes);
}

bool FileErasure::isStillNamed(const std::string& name) const {
  struct statx facts;
  return factsOf(calls(), folder_, name.c_str(), facts) == 0 && isSame(facts, status_);
}

// Takes a name that says nothing. False when that cannot be, which is no reason to keep the file.
bool FileErasure::rename(std::string& meaningless) const {
  for (int tries = 0; tries < kNameTries; ++tries) {
    meaningless = meaninglessName(name_.size());
    if (meaningless.empty()) return false;
    if (::renameat2(folder_, name_.c_str(), folder_, meaningless.c_str(), RENAME_NOREPLACE) == 0) {
      return true;
    }
    if (errno != EEXIST) return false;
  }
  return false;
}

// Nothing here waits or can be stopped: either the name is gone at the end, or it is the old one.
FileErasure::Reason FileErasure::takeAway() {
  if (EraserRun::isStopped()) return "stopped: overwritten, not removed";
  if (!isStillNamed(name_)) return wordsFor(ELOOP);
  if (status_.st_size > 0) {
    // Gives the blocks back as unused, which a file system that discards tells the medium.
    ::fallocate(file_.get(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, 0, status_.st_size);
    if (::ftruncate(file_.get(), 0) != 0) return wordsFor(errno);
  }

  std::string now = name_;
  const bool isRenamed = rename(now);
  if (!isRenamed) now = name_;
  const auto putBack = [&](int error) {
    if (isRenamed) {
      ::renameat2(folder_, now.c_str(), folder_, name_.c_str(), RENAME_NOREPLACE);
    }
    return wordsFor(error) + " (its content is overwritten)";
  };
  if (!isStillNamed(now)) return putBack(ELOOP);
  if (calls().unlinkat(folder_, now.c_str(), 0) != 0) return putBack(errno);
  modeBefore_.reset();
  struct statx facts;
  if (factsOf(calls(), folder_, name_.c_str(), facts) == 0) {
    return "something else was put at its place meanwhile";
  }
  run_.tell(path_, "erased");
  return std::nullopt;
}

}  // namespace brisko::srm
