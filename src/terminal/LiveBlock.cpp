#include "LiveBlock.h"

#include "Output.h"

#include <fmt/format.h>

#include <algorithm>

#include <sys/ioctl.h>
#include <unistd.h>

namespace brisko {
namespace {

winsize outputSize() {
  constexpr unsigned short kUsualColumns = 80;
  constexpr unsigned short kUsualRows = 24;
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) size = {};
  if (size.ws_col == 0) size.ws_col = kUsualColumns;
  if (size.ws_row == 0) size.ws_row = kUsualRows;
  return size;
}

}  // namespace

LiveBlock::LiveBlock() : isInPlace_(canRedraw()) {}

LiveBlock::~LiveBlock() {
  // The key that ended it stands there too.
  if (isInPlace_) writeOut("\r\033[K");
}

std::size_t LiveBlock::outputColumns() {
  return outputSize().ws_col;
}

std::string LiveBlock::cut(std::string_view line, std::size_t columns) {
  std::string kept;
  std::size_t taken = 0;
  bool isEscape = false;
  bool hasColour = false;
  for (const char byte : line) {
    if (byte == '\033') isEscape = true;
    const bool isContinuation = (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
    if (!isEscape && !isContinuation && taken++ == columns)
      return kept + (hasColour ? "\033[0m" : "");
    kept += byte;
    if (!isEscape || byte != 'm') continue;
    isEscape = false;
    hasColour = !kept.ends_with("[0m");
  }
  return kept;
}

bool LiveBlock::show(std::string_view text) {
  if (!isInPlace_) {
    const std::string block = (isShown_ ? "\n" : "") + std::string(text);
    isShown_ = true;
    return writeOut(block);
  }
  const winsize size = outputSize();
  const std::size_t room = std::max(2, int{size.ws_row}) - 1U;
  // The terminal may have become smaller since; what has left it at the top cannot be reached.
  std::string block;
  if (lines_ > 0) block += fmt::format("\033[{}F", std::min(lines_, room));
  lines_ = 0;
  while (!text.empty() && lines_ < room) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    block += cut(text.substr(0, end), size.ws_col) + "\033[K\n";
    text.remove_prefix(std::min(end + 1, text.size()));
    ++lines_;
  }
  return writeOut(block + "\033[J");
}

}  // namespace brisko
