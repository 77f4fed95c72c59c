#include "PrivilegedRemoval.h"

#include "Host.h"
#include "PathResolution.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace brisko {
namespace {

constexpr std::size_t kSmallestBuffer = 260;

// Length in UTF-16 units of bytes that are UTF-8; a byte that is not counts as one.
std::size_t characterLength(const std::string& path) {
  std::size_t length = 0;
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) != 0x80) length += byte >= 0xF0 ? 2 : 1;
  }
  return length;
}

bool fitsBuffer(const std::string& path) {
  return path.size() <= std::max(characterLength(path), kSmallestBuffer) - 1;
}

RemovalReport reportOf(RemovalOutcome outcome, std::string reason) {
  RemovalReport report;
  report.outcome = outcome;
  report.reason = std::move(reason);
  return report;
}

}  // namespace

PrivilegedPlace privilegedPlace(const std::string& path) {
  if (!fitsBuffer(path)) {
    return {"", reportOf(RemovalOutcome::failed,
                         "The path is too long to be removed with administrator rights.")};
  }
  if (auto refusal = RemovalEngine().refusal(path)) return {"", std::move(refusal)};
  // The privileged side follows no link at all, so it is given the place as it really is.
  const ParentFolder parent = openParent(RemovalCalls::system(), path);
  bool isMissing = parent.error == ENOENT || parent.error == ENOTDIR;
  struct statx facts;
  if (parent.error == 0) {
    isMissing =
        factsOf(RemovalCalls::system(), parent.folder.get(), parent.name.c_str(), facts) != 0 &&
        errno == ENOENT;
  }
  if (isMissing) return {"", reportOf(RemovalOutcome::missing, "It is not there.")};
  return {parent.error == 0 ? parent.itemPath() : path, std::nullopt};
}

RemovalReport runPrivilegedTool(Authorization::Reference reference, const std::string& path,
                                const std::optional<FileIdentity>& shown, bool& toolHasGone) {
  Authorization::Result result;
  const int status =
      Host::current().authorization->execute(reference, "/bin/rm", {"-rf", path}, shown, result);
  toolHasGone = status == Authorization::kToolFailed || status == Authorization::kInvalid;
  if (toolHasGone) {
    return reportOf(RemovalOutcome::failed, "The privileged helper did not answer.");
  }
  RemovalReport report;
  report.freedBytes = result.freedBytes;
  report.outcome = RemovalOutcome::removed;
  if (status == 0 && result.output.empty()) return report;
  report.outcome = RemovalOutcome::failed;
  report.reason = result.output.empty() ? "The privileged helper refused." : result.output;
  return report;
}

}  // namespace brisko
