#include "ProgramFiles.h"

#include <climits>
#include <string_view>

#include <unistd.h>

namespace brisko {
namespace {

constexpr std::string_view kTools = "/libexec/brisko";

std::string executable() {
  char buffer[PATH_MAX];
  const ssize_t length = ::readlink("/proc/self/exe", buffer, sizeof buffer);
  if (length <= 0 || length == sizeof buffer) return {};
  return {buffer, static_cast<std::size_t>(length)};
}

std::string above(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

}  // namespace

std::string ProgramFiles::program() {
  const std::string running = executable();
  const std::string folder = above(running);
  if (!folder.ends_with(kTools)) return running;
  return folder.substr(0, folder.size() - kTools.size()) + "/bin/brisko";
}

std::string ProgramFiles::tools() {
  const std::string running = executable();
  if (running.empty()) return {};
  const std::string folder = above(running);
  return folder.ends_with(kTools) ? folder : above(folder) + std::string(kTools);
}

}  // namespace brisko
