#include "BundleContent.h"

#include "FileDescriptor.h"
#include "ListingWalk.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr std::size_t kPiece = 128 * 1024;

class OpenItem {
 public:
  OpenItem(const std::string& path, const FileIdentity& identity)
      : identity_(identity),
        file_(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {}

  bool isTheItem() const {
    struct stat status;
    return file_ && identity_.kind == FileKind::regular && fstat(file_.get(), &status) == 0 &&
           FileIdentity::of(status) == identity_;
  }

  bool read(unsigned char* into, std::size_t length) const {
    for (std::size_t got = 0; got < length;) {
      const ssize_t count = ::read(file_.get(), into + got, length - got);
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return false;
      got += static_cast<std::size_t>(count);
    }
    return true;
  }

 private:
  FileIdentity identity_;
  FileDescriptor file_;
};

std::string textOfLink(const std::string& path) {
  std::string text(PATH_MAX, '\0');
  const ssize_t length = readlink(path.c_str(), text.data(), text.size());
  text.resize(static_cast<std::size_t>(std::max<ssize_t>(0, length)));
  return text;
}

}  // namespace

bool sameBytes(const std::string& path, const FileIdentity& identity, const std::string& other,
               const FileIdentity& otherIdentity, const std::atomic<bool>& stop,
               std::string& reason) {
  const OpenItem item(path, identity);
  const OpenItem otherItem(other, otherIdentity);
  if (!item.isTheItem()) {
    reason = "it has changed since it was found";
    return false;
  }
  if (!otherItem.isTheItem()) {
    reason = "the other copy has changed or gone";
    return false;
  }
  bool isSame = identity.size == otherIdentity.size &&
                (identity.device != otherIdentity.device || identity.inode != otherIdentity.inode);
  const auto buffer = std::make_unique<unsigned char[]>(2 * kPiece);
  for (std::uint64_t at = 0; isSame && at < identity.size; at += kPiece) {
    if (stop) return false;
    const std::size_t length = std::min<std::uint64_t>(kPiece, identity.size - at);
    isSame = item.read(buffer.get(), length) && otherItem.read(buffer.get() + kPiece, length) &&
             std::memcmp(buffer.get(), buffer.get() + kPiece, length) == 0;
  }
  if (isSame && item.isTheItem() && otherItem.isTheItem()) return true;
  reason = "the other copy does not hold the same bytes any more";
  return false;
}

bool BundleContent::list(const DuplicateCopy& bundle, const std::atomic<bool>& stop) {
  if (FileIdentity::at(bundle.path) != bundle.identity) return false;
  std::uint64_t size = 0;
  bool isPlain = true;
  ListingWalk walk;
  walk.visit = [&](const ListedEntry& entry) {
    const FileKind kind = entry.identity.kind;
    if (kind == FileKind::directory) return true;
    Entry listed{entry.path, entry.path.substr(bundle.path.size()), "", entry.identity, false};
    if (kind == FileKind::symbolicLink) {
      listed.linkText = textOfLink(entry.path);
    } else {
      isPlain = kind == FileKind::regular;
    }
    // A link to a folder was not counted when the bundle was found.
    struct stat target;
    const bool leadsToFolder = kind == FileKind::symbolicLink &&
                               stat(entry.path.c_str(), &target) == 0 && S_ISDIR(target.st_mode);
    if (!leadsToFolder) size += entry.size;
    entries_.push_back(std::move(listed));
    return isPlain;
  };
  walk.unreadable = [](const std::string&, int) { return false; };
  const bool isWhole = walk.run(bundle.path, stop) && isPlain && size == bundle.size;
  std::sort(entries_.begin(), entries_.end(),
            [](const Entry& one, const Entry& another) { return one.below < another.below; });
  return isWhole;
}

bool BundleContent::takePartner(const Entry& entry, const std::atomic<bool>& stop) {
  std::string reason;
  const auto isPartner = [&](const Entry& other) {
    if (other.isTaken || other.identity.kind != entry.identity.kind ||
        other.identity.size != entry.identity.size || other.linkText != entry.linkText) {
      return false;
    }
    return entry.identity.kind == FileKind::symbolicLink ||
           sameBytes(entry.path, entry.identity, other.path, other.identity, stop, reason);
  };
  // Most often the partner has the same name.
  auto found = std::lower_bound(
      entries_.begin(), entries_.end(), entry,
      [](const Entry& one, const Entry& another) { return one.below < another.below; });
  if (found == entries_.end() || found->below != entry.below || !isPartner(*found)) {
    found = std::find_if(entries_.begin(), entries_.end(), isPartner);
  }
  if (found == entries_.end()) return false;
  found->isTaken = true;
  return true;
}

bool BundleContent::pairsUp(const DuplicateCopy& bundle, const DuplicateCopy& other,
                            const std::atomic<bool>& stop, std::string& reason) {
  BundleContent content;
  BundleContent otherContent;
  if (!content.list(bundle, stop)) {
    reason = "it has changed since it was found";
    return false;
  }
  reason = "the other copy has changed or gone";
  if (!otherContent.list(other, stop) || content.entries_.size() != otherContent.entries_.size()) {
    return false;
  }
  reason = "the other copy does not hold the same bytes any more";
  return std::all_of(content.entries_.begin(), content.entries_.end(),
                     [&](const Entry& entry) { return otherContent.takePartner(entry, stop); });
}

}  // namespace brisko
