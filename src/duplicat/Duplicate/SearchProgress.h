#pragma once

#include <atomic>
#include <cstdint>

namespace brisko {

/// How many of a search's candidates are decided: found to be a copy of another, or of none.
class SearchProgress {
 public:
  void begin(std::uint64_t all) {
    decided_ = 0;
    all_ = all;
  }
  void decide(std::uint64_t count = 1) { decided_.fetch_add(count, std::memory_order_relaxed); }

  void decideAll() { decided_ = all_.load(); }

  /// 0 to 100, whole; 0 before the start.
  std::uint32_t percentage() const {
    const std::uint64_t all = all_;
    return all == 0 ? 0 : static_cast<std::uint32_t>(decided_.load() * 100 / all);
  }

 private:
  std::atomic<std::uint64_t> all_ = 0;
  std::atomic<std::uint64_t> decided_ = 0;
};

}  // namespace brisko
