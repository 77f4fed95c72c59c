#include "Output.h"

#include "SystemLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <sys/ioctl.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr std::chrono::milliseconds kProgressPause{100};
constexpr std::size_t kUsualColumns = 80;

bool isSet(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0';
}

bool isDumb() {
  const char* terminal = std::getenv("TERM");
  return terminal == nullptr || std::strcmp(terminal, "dumb") == 0;
}

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::size_t columnsOf(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char byte) { return !isContinuation(byte); }));
}

std::string_view lastColumns(std::string_view text, std::size_t columns) {
  std::size_t begin = text.size();
  while (begin > 0 && columns > 0) {
    --begin;
    if (!isContinuation(text[begin])) --columns;
  }
  return text.substr(begin);
}

std::size_t terminalColumns() {
  winsize size{};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsualColumns;
  return size.ws_col;
}

}  // namespace

Style Style::ofStandardOutput() {
  return Style(isatty(STDOUT_FILENO) != 0 && !isSet("NO_COLOR") && !isDumb());
}

std::string Style::wrapped(const char* code, std::string_view text) const {
  if (!colour_ || text.empty()) return std::string(text);
  return fmt::format("\033[{}m{}\033[0m", code, text);
}

std::string rightAligned(std::string_view text, std::size_t columns) {
  const std::size_t taken = columnsOf(text);
  return std::string(columns > taken ? columns - taken : 0, ' ') + std::string(text);
}

std::string leftAligned(std::string_view text, std::size_t columns) {
  const std::size_t taken = columnsOf(text);
  return std::string(text) + std::string(columns > taken ? columns - taken : 0, ' ');
}

std::string counted(std::size_t count, std::string_view singular) {
  return fmt::format("{} {}{}", count, singular, count == 1 ? "" : "s");
}

bool writeOut(std::string_view text) {
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (std::fflush(stdout) == 0 && written) return true;
  writeError(fmt::format("standard output: {}", std::strerror(errno)));
  return false;
}

void writeError(std::string_view text) {
  const std::string line = "brisko: " + escapedForDisplay(text) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

bool canRedraw() {
  return isatty(STDOUT_FILENO) != 0 && !isDumb();
}

ProgressLine::ProgressLine() : isTerminal_(isatty(STDERR_FILENO) != 0 && !isDumb()) {}

ProgressLine::~ProgressLine() {
  clear();
}

bool ProgressLine::isDue() const {
  return isTerminal_ && std::chrono::steady_clock::now() - lastShown_ >= kProgressPause;
}

void ProgressLine::show(std::string_view what, std::string_view path) {
  if (!isTerminal_) return;
  lastShown_ = std::chrono::steady_clock::now();
  isShown_ = true;
  std::string line(what);
  const std::string place = escapedForDisplay(path);
  const std::size_t room = terminalColumns() - 1;
  const std::size_t taken = columnsOf(line) + 1;
  if (!place.empty() && room > taken + 8) {
    const std::size_t left = room - taken;
    line += ' ';
    line += columnsOf(place) <= left ? place : "…" + std::string(lastColumns(place, left - 1));
  }
  fmt::print(stderr, "\r\033[K{}", line);
  std::fflush(stderr);
}

void ProgressLine::clear() {
  if (!isShown_) return;
  isShown_ = false;
  std::fputs("\r\033[K", stderr);
  std::fflush(stderr);
}

bool canConfirm() {
  return isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0;
}

std::string ask(const std::string& question) {
  fmt::print(stderr, "{} ", question);
  std::fflush(stderr);
  std::string answer;
  char byte = 0;
  while (::read(STDIN_FILENO, &byte, 1) == 1 && byte != '\n')
    answer += byte;
  return answer;
}

bool confirm(const std::string& question) {
  std::string answer = ask(question + " [y/N]");
  std::transform(answer.begin(), answer.end(), answer.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return answer == "y" || answer == "yes";
}

}  // namespace brisko
