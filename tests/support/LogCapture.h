#pragma once

#include "SystemLog.h"

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace brisko::test {

/// Catches the system log while it lives.
class LogCapture {
 public:
  LogCapture() {
    before_ = SystemLog::setSink([this](std::string_view line) {
      std::lock_guard lock(mutex_);
      lines_.emplace_back(line);
    });
  }
  ~LogCapture() { SystemLog::setSink(std::move(before_)); }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  std::vector<std::string> lines() const {
    std::lock_guard lock(mutex_);
    return lines_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
  SystemLog::Sink before_;
};

}  // namespace brisko::test
