#include "FlatpakApplications.h"

#include "RegularFile.h"

#include <algorithm>
#include <filesystem>

#include <sys/stat.h>

namespace brisko {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaximumFile = 1 << 20;

// One name of a path. What the folder says becomes part of a command and of paths.
bool isPart(std::string_view text) {
  return !text.empty() && text.front() != '.' && text.front() != '-' && text.size() < 256 &&
         std::all_of(text.begin(), text.end(), [](unsigned char c) {
           return (c < 0x80 && std::isalnum(c) != 0) || c == '.' || c == '-' || c == '_';
         });
}

// "arch/branch" in the link "current".
bool isArchAndBranch(const std::string& text) {
  const std::size_t slash = text.find('/');
  return slash != std::string::npos && isPart(text.substr(0, slash)) &&
         isPart(text.substr(slash + 1));
}

bool isFolder(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string runtimeIn(const std::string& metadata) {
  const std::size_t group = metadata.find("[Application]\n");
  const std::size_t key = metadata.find("\nruntime=", group);
  if (group == std::string::npos || key == std::string::npos) return "";
  const std::size_t begin = key + 9;
  return metadata.substr(begin, metadata.find('\n', begin) - begin);
}

std::size_t aligned(std::size_t offset) {
  return (offset + 7) & ~std::size_t{7};
}

std::string_view textAt(std::string_view bytes, std::size_t offset) {
  if (offset >= bytes.size()) return {};
  const std::size_t end = bytes.find('\0', offset);
  return end == std::string_view::npos ? std::string_view() : bytes.substr(offset, end - offset);
}

}  // namespace

void readFlatpakDeploy(std::string_view bytes, std::string& version, std::uint64_t& size) {
  version.clear();
  size = 0;
  // Origin and commit, then a list of subpaths, which applications do not have.
  const std::size_t commit = textAt(bytes, 0).size() + 1;
  const std::string_view checksum = textAt(bytes, commit);
  const std::size_t number = aligned(commit + checksum.size() + 1);
  if (checksum.size() == 64 && number + 8 <= bytes.size()) {
    for (std::size_t i = 0; i < 8; ++i)
      size = size << 8 | static_cast<unsigned char>(bytes[number + i]);
    constexpr std::uint64_t kPlausible = 1ULL << 50;
    if (size > kPlausible) size = 0;
  }
  // Each entry of a dictionary begins at a multiple of eight, its value too.
  constexpr std::string_view kKey("appdata-version\0", 16);
  std::size_t key = bytes.find(kKey);
  while (key != std::string_view::npos && key % 8 != 0)
    key = bytes.find(kKey, key + 1);
  if (key == std::string_view::npos) return;
  const std::size_t value = aligned(key + kKey.size());
  const std::string_view text = textAt(bytes, value);
  // A variant says after its value of which type that is.
  if (bytes.substr(std::min(bytes.size(), value + text.size() + 1), 2) ==
      std::string_view("\0s", 2)) {
    version = text;
  }
}

std::optional<FlatpakDeployment> FlatpakInstallation::deployment(const std::string& id) const {
  if (!isPart(id)) return std::nullopt;
  const std::string application = folder_ + "/app/" + id;
  std::error_code error;
  const std::string current = fs::read_symlink(application + "/current", error);
  if (error || !isArchAndBranch(current)) return std::nullopt;
  const std::string active = application + "/" + current + "/active";
  struct stat status;
  if (::lstat(active.c_str(), &status) != 0) return std::nullopt;
  FlatpakDeployment found;
  found.id = id;
  found.ref = "app/" + id + "/" + current;
  found.date = status.st_mtime;
  int failure = 0;
  if (const auto deploy = readFile(active + "/deploy", kMaximumFile, failure)) {
    readFlatpakDeploy(*deploy, found.version, found.bytes);
  }
  if (const auto metadata = readFile(active + "/metadata", kMaximumFile, failure)) {
    found.runtime = runtimeIn(*metadata);
  }
  return found;
}

std::vector<FlatpakDeployment> FlatpakInstallation::deployments() const {
  std::vector<FlatpakDeployment> all;
  std::error_code error;
  fs::directory_iterator iterator(folder_ + "/app", error);
  for (; !error && iterator != fs::directory_iterator(); iterator.increment(error)) {
    if (auto found = deployment(iterator->path().filename())) all.push_back(*std::move(found));
  }
  return all;
}

UninstallPlan FlatpakInstallation::plan(const std::string& ref,
                                        const std::vector<FlatpakDeployment>& others) const {
  UninstallPlan plan;
  plan.removes = {ref};
  plan.command = std::string("flatpak uninstall ") + (isForUser_ ? "--user " : "--system ") + ref;
  const std::size_t begin = ref.find('/') + 1;
  const std::string id = ref.substr(begin, ref.find('/', begin) - begin);
  const auto found = deployment(id);
  if (!ref.starts_with("app/") || !found || found->ref != ref) {
    plan.refusal = id + " is not installed any more.";
    return plan;
  }
  plan.bytes = found->bytes;
  const std::string rest = ref.substr(begin + id.size());
  for (const char* extension : {".Debug", ".Locale"}) {
    const std::string part = "runtime/" + id + extension + rest;
    if (isFolder(folder_ + "/" + part)) plan.alsoRemoves.push_back(part);
  }
  const bool isShared = std::any_of(others.begin(), others.end(), [&](const auto& other) {
    return other.ref != ref && other.runtime == found->runtime;
  });
  if (!found->runtime.empty() && !isShared) {
    plan.leavesUnused.push_back("runtime/" + found->runtime);
  }
  return plan;
}

}  // namespace brisko
