#include "SystemLog.h"

#include "Utf8.h"

#include <spdlog/sinks/syslog_sink.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <memory>
#include <mutex>

#include <unistd.h>

namespace brisko {
namespace {

struct LogState {
  std::mutex mutex;
  SystemLog::Sink sink;
  std::atomic<bool> echo = false;
  // Without a daemon behind /dev/log the C library drops the line, which is what is wanted.
  std::shared_ptr<spdlog::sinks::sink> system =
      std::make_shared<spdlog::sinks::syslog_sink_mt>("brisko", LOG_PID, LOG_USER, false);
};

LogState& logState() {
  // Never destroyed: a worker may still log while the process ends.
  static auto* state = new LogState;
  return *state;
}

void writeToStandardError(const std::string& line) {
  std::string whole = line + "\n";
  std::size_t written = 0;
  while (written < whole.size()) {
    const ssize_t count = ::write(STDERR_FILENO, whole.data() + written, whole.size() - written);
    if (count <= 0) return;
    written += static_cast<std::size_t>(count);
  }
}

}  // namespace

void SystemLog::write(std::string_view text) {
  LogState& state = logState();
  const std::string line = escapedForDisplay(text);
  // The message is handed over as text that is no format: "%" in a path stays "%".
  // Notice has no level of the library's own; syslog's "info" lies nearest.
  state.system->log(spdlog::details::log_msg("brisko", spdlog::level::info, line));
  if (state.echo) writeToStandardError(line);
  std::lock_guard lock(state.mutex);
  if (state.sink) state.sink(line);
}

void SystemLog::setEchoToStandardError(bool echo) {
  logState().echo = echo;
}

SystemLog::Sink SystemLog::setSink(Sink sink) {
  LogState& state = logState();
  std::lock_guard lock(state.mutex);
  state.sink.swap(sink);
  return sink;
}

std::string escapedForDisplay(std::string_view text) {
  const auto isPlain = [](unsigned char byte) { return byte >= 0x20 && byte < 0x7F; };
  if (std::all_of(text.begin(), text.end(), isPlain)) return std::string(text);
  std::string shown;
  shown.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = utf8SequenceLength(text);
    const auto byte = static_cast<unsigned char>(text.front());
    // C1 controls (U+0080 to U+009F) steer terminals just as the ASCII ones do.
    const bool isControl =
        byte < 0x20 || byte == 0x7F ||
        (length == 2 && byte == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0);
    if (byte == '\n') {
      shown += "\\n";
    } else if (byte == '\t') {
      shown += "\\t";
    } else if (length == 0 || isControl) {
      for (std::size_t i = 0; i < std::max<std::size_t>(length, 1); ++i) {
        shown += fmt::format("\\x{:02X}", static_cast<unsigned char>(text[i]));
      }
    } else {
      shown.append(text.substr(0, length));
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return shown;
}

}  // namespace brisko
