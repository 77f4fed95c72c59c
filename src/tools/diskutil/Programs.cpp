#include "Programs.h"

#include "Failure.h"
#include "HostTools.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko::diskutil {
namespace {

/// The first line of what a program complained that is not just its name and version.
std::string complaint(const std::string& text) {
  std::size_t begin = 0;
  while (begin < text.size()) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    const std::string line = text.substr(begin, end - begin);
    const std::size_t digit = line.find(' ') + 1;
    const bool isBanner = digit > 0 && digit < line.size() && line.find(':') == std::string::npos &&
                          std::isdigit(static_cast<unsigned char>(line[digit])) != 0;
    if (!isBanner && line.find_first_not_of(' ') != std::string::npos) return line;
    begin = end + 1;
  }
  return {};
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
  std::string said = complaint(outcome.errors);
  if (said.empty()) said = complaint(outcome.output);
  if (said.empty()) said = fmt::format("it ended with status {}", outcome.status);
  throw Failure(said.starts_with(name) ? escapedForDisplay(said)
                                       : fmt::format("{}: {}", name, escapedForDisplay(said)));
}

}  // namespace brisko::diskutil
