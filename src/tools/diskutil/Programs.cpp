#include "Programs.h"

#include "Failure.h"
#include "HostTools.h"
#include "SystemLog.h"

#include <filesystem>

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko::diskutil {
namespace {

std::string lastLine(std::string text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
    text.pop_back();
  const std::size_t end = text.rfind('\n');
  return end == std::string::npos ? text : text.substr(end + 1);
}

}  // namespace

std::string programPath(std::string_view name) {
  for (std::string_view folder : {"/usr/sbin/", "/usr/bin/", "/sbin/", "/bin/"}) {
    std::string path = std::string(folder) + std::string(name);
    struct stat status;
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) continue;
    if (status.st_uid != 0 || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0) continue;
    if (access(path.c_str(), X_OK) == 0) return path;
  }
  return {};
}

std::string requireProgram(std::string_view name, std::string_view package) {
  std::string path = programPath(name);
  if (!path.empty()) return path;
  if (package.empty()) throw Failure(fmt::format("this system has no {}", name));
  throw Failure(fmt::format("this system has no {}; the package {} brings it", name, package));
}

void runProgram(const std::string& path, const std::vector<std::string>& arguments) {
  std::vector<std::string> words = {path};
  words.insert(words.end(), arguments.begin(), arguments.end());
  const HostTools::Outcome outcome = HostTools::run(words, std::size_t{64} << 10);
  if (outcome.status == 0) return;
  const std::string name = std::filesystem::path(path).filename().string();
  std::string said = lastLine(outcome.errors);
  if (said.empty()) said = lastLine(outcome.output);
  if (said.empty()) said = fmt::format("it ended with status {}", outcome.status);
  throw Failure(said.starts_with(name) ? escapedForDisplay(said)
                                       : fmt::format("{}: {}", name, escapedForDisplay(said)));
}

}  // namespace brisko::diskutil
