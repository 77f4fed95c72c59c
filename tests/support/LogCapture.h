#pragma once

#include "SystemLog.h"

#include <algorithm>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace brisko::test {

/// Reads along with the system log while it lives.
class LogCapture {
 public:
  LogCapture()
      : previous_(SystemLog::setSink([this](std::string_view line) {
          const std::lock_guard lock(mutex_);
          lines_.emplace_back(line);
        })) {}
  ~LogCapture() { SystemLog::setSink(std::move(previous_)); }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  std::vector<std::string> lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }
  bool has(const std::string& line) const {
    const auto all = lines();
    return std::find(all.begin(), all.end(), line) != all.end();
  }
  int count(const std::string& begin) const {
    const auto all = lines();
    return static_cast<int>(
        std::count_if(all.begin(), all.end(), [&](const auto& l) { return l.starts_with(begin); }));
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
  SystemLog::Sink previous_;
};

}  // namespace brisko::test
