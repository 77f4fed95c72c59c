#include "ReaderCrew.h"

#include <algorithm>
#include <system_error>

#include <sys/resource.h>
#include <unistd.h>

// The thread sanitizer takes descriptors of one number for one file.
#if __has_include(<linux/close_range.h>) && !defined(__SANITIZE_THREAD__)
#include <linux/close_range.h>
#define BRISKO_OWN_DESCRIPTORS 1
#else
#define BRISKO_OWN_DESCRIPTORS 0
#endif

namespace brisko {
namespace {

// Copies nothing but the standard streams, so that no other descriptor of the process stays open
// for longer than its owner wants.
void takeOwnDescriptors() {
#if BRISKO_OWN_DESCRIPTORS
  close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_UNSHARE);
#endif
}

// Few enough to notice a cold disk within milliseconds, enough not to be misled by one slow file.
constexpr unsigned kUnitsPerLook = 16;

}  // namespace

ReaderCrew::Member::Member(ReaderCrew& crew) : crew_(crew), sleepsAtStart_(sleeps()) {}

long ReaderCrew::Member::sleeps() {
#ifdef RUSAGE_THREAD
  rusage usage{};
  getrusage(RUSAGE_THREAD, &usage);
  return usage.ru_nvcsw;
#else
  return 0;
#endif
}

void ReaderCrew::Member::restart() {
  units_ = 0;
  sleepsAtStart_ = sleeps();
}

void ReaderCrew::Member::unitDone() {
  if (++units_ < kUnitsPerLook) return;
  const long now = sleeps();
  if (now - sleepsAtStart_ >= static_cast<long>(units_ / 2)) crew_.grow();
  units_ = 0;
  sleepsAtStart_ = now;
}

void ReaderCrew::takePart() {
  Member member(*this);
  (*body_)(member);
}

void ReaderCrew::start(unsigned count) {
  for (; count > 0; --count) {
    try {
      threads_.emplace_back([this] {
        if (descriptors_ == Descriptors::own) takeOwnDescriptors();
        takePart();
      });
    } catch (const std::system_error&) {
      return;  // the machine has no thread to give: those that run do the work
    }
    ++size_;
  }
}

void ReaderCrew::grow() {
  std::lock_guard lock(mutex_);
  if (isEnding_ || size_ >= maximum_) return;
  start(std::min(size_.load(), maximum_ - size_));
}

void ReaderCrew::run(std::size_t useful, unsigned maximum, const std::function<void(Member&)>& body,
                     Descriptors descriptors) {
  const unsigned processors = std::max(1U, std::thread::hardware_concurrency());
  {
    std::lock_guard lock(mutex_);
    body_ = &body;
    descriptors_ = descriptors;
    maximum_ = std::max(maximum, processors);
    size_ = 1;
    isEnding_ = false;
    start(
        static_cast<unsigned>(std::min<std::size_t>(processors, std::max<std::size_t>(1, useful))) -
        1);
  }
  takePart();
  std::vector<std::thread> ended;
  {
    std::lock_guard lock(mutex_);
    isEnding_ = true;
    ended.swap(threads_);
  }
  for (std::thread& thread : ended)
    thread.join();
}

}  // namespace brisko
