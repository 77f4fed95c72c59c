#include "PlainSearch.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>

#include <dirent.h>
#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko::test {
namespace {

using Names = std::vector<std::string>;

std::optional<Names> namesIn(const std::string& path) {
  DIR* folder = opendir(path.c_str());
  if (folder == nullptr) return std::nullopt;
  Names names;
  while (const dirent* entry = readdir(folder)) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  closedir(folder);
  return names;
}

bool isFolder(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool isThere(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0;
}

struct stat own(const std::string& path) {
  struct stat status = {};
  lstat(path.c_str(), &status);
  return status;
}

Names componentsOf(const std::string& path) {
  Names names;
  for (const auto& part : std::filesystem::path(path))
    names.push_back(part.string());
  return names;
}

bool isHidden(const std::string& path) {
  const Names names = componentsOf(path);
  return std::any_of(names.begin(), names.end(), [](const auto& name) { return name[0] == '.'; });
}

bool recurse(Names& out, const std::string& path) {
  const auto names = namesIn(path);
  if (!names) return false;
  for (const std::string& name : *names) {
    const std::string full = path + "/" + name;
    if (S_ISLNK(own(full).st_mode) || !isThere(full)) continue;
    if (isFolder(full) && !recurse(out, full)) continue;
    out.push_back(full);
  }
  return true;
}

// Everything below, folders before their contents; links are not entered.
bool subpaths(Names& out, const std::string& path) {
  const auto names = namesIn(path);
  if (!names) return false;
  for (const std::string& name : *names) {
    const std::string full = path + "/" + name;
    out.push_back(full);
    if (S_ISDIR(own(full).st_mode) && !subpaths(out, full)) return false;
  }
  return true;
}

// The content as far as it may be known: links lead nowhere, and only regular files are opened.
std::optional<std::string> contentOf(const std::string& path, bool readsLinks, std::size_t most) {
  const struct stat status = own(path);
  std::string content;
  if (S_ISLNK(status.st_mode) && readsLinks) {
    content.resize(4096);
    const ssize_t length = readlink(path.c_str(), content.data(), content.size());
    content.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    return content.substr(0, most);
  }
  if (!S_ISREG(status.st_mode)) return std::nullopt;
  const int file = open(path.c_str(), O_RDONLY | O_NOFOLLOW);
  if (file < 0) return std::nullopt;
  content.resize(std::min<std::size_t>(most, static_cast<std::size_t>(status.st_size)));
  const ssize_t length = read(file, content.data(), content.size());
  close(file);
  content.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
  return content;
}

}  // namespace

std::uint64_t PlainSearch::crc(const void* bytes, std::size_t length, std::uint64_t start) {
  static const std::array<std::uint64_t, 256> kTable = [] {
    std::array<std::uint64_t, 256> table{};
    for (std::uint64_t n = 0; n < table.size(); ++n) {
      table[n] = n;
      for (int bit = 0; bit < 8; ++bit)
        table[n] = (table[n] >> 1) ^ ((table[n] & 1) != 0 ? 0x95AC9329AC4BC9B5 : 0);
    }
    return table;
  }();
  const auto* byte = static_cast<const unsigned char*>(bytes);
  for (std::size_t i = 0; i < length; ++i)
    start = kTable[(start ^ byte[i]) & 0xFF] ^ (start >> 8);
  return start;
}

void PlainSearch::Reader::firstKilobyte(File& file, bool readsLinks) {
  const auto content = contentOf(file.path, readsLinks, 1024);
  if (content) std::copy(content->begin(), content->end(), buffer.begin());
  file.md5_1k = crc(buffer.data(), 1024);
}

bool PlainSearch::Reader::whole(File& file, bool readsLinks) {
  const auto content = contentOf(file.path, readsLinks, SIZE_MAX);
  if (!content || content->empty()) return false;
  file.md5 = crc(content->data(), content->size());
  return true;
}

bool PlainSearch::run(const std::string& root) {
  const auto names = namesIn(root);
  if (!names) return false;
  Names paths;
  for (const std::string& name : *names) {
    const std::string full = root + "/" + name;
    if (!isThere(full)) continue;
    if (!isFolder(full)) {
      paths.push_back(full);
    } else if (searchesHidden || !isHidden(full)) {
      Names below;
      recurse(below, full);
      paths.insert(paths.end(), below.begin(), below.end());
    }
  }
  select(paths);
  compareBundles();
  group();
  return true;
}

void PlainSearch::select(const Names& paths) {
  for (const std::string& path : paths) {
    if (!searchesHidden && isHidden(path)) continue;
    const auto size = static_cast<std::uint64_t>(own(path).st_size);
    if (divertToBundle(path, size) || isFolder(path)) continue;
    if (size > limit) candidates.push_back({path, size, 0, 0});
  }
}

bool PlainSearch::divertToBundle(const std::string& path, std::uint64_t ownSize) {
  std::filesystem::path running;
  for (const auto& part : std::filesystem::path(path)) {
    running /= part;
    if (strcasecmp(part.extension().c_str(), ".app") != 0) continue;
    const bool isNew = std::find(bundles.begin(), bundles.end(), running.string()) == bundles.end();
    if (isNew && ownSize > limit) bundles.push_back(running.string());
    return true;
  }
  return false;
}

bool PlainSearch::same(Bundle a, Bundle b) {
  if (a.files.size() != b.files.size()) return false;
  for (Bundle* bundle : {&a, &b}) {
    Reader reader;
    for (File& file : bundle->files)
      reader.firstKilobyte(file, true);
  }
  for (File& x : a.files) {
    const auto partner = std::find_if(b.files.begin(), b.files.end(), [&](File& y) {
      if (x.md5_1k != y.md5_1k || x.size != y.size) return false;
      const bool areEmpty =
          x.size == 0 && S_ISREG(own(x.path).st_mode) && S_ISREG(own(y.path).st_mode);
      // What could not be read equals nothing.
      if (!areEmpty && !(Reader::whole(x, true) && Reader::whole(y, true))) return false;
      return x.md5 == y.md5;
    });
    if (partner == b.files.end()) return false;
    b.files.erase(partner);
  }
  return true;
}

void PlainSearch::compareBundles() {
  std::list<Bundle> left;
  for (const std::string& path : bundles) {
    Names below;
    Bundle bundle{path, {}, 0};
    if (!subpaths(below, path)) continue;
    for (const std::string& each : below) {
      if (isFolder(each)) continue;
      bundle.files.push_back({each, static_cast<std::uint64_t>(own(each).st_size), 0, 0});
      bundle.size += bundle.files.back().size;
    }
    left.push_back(std::move(bundle));
  }
  while (!left.empty()) {
    const Bundle item = left.front();
    left.pop_front();
    std::vector<std::string> found;
    for (auto other = left.begin(); other != left.end();) {
      if (other->size == item.size && same(item, *other)) {
        found.push_back(other->path);
        other = left.erase(other);
      } else {
        ++other;
      }
    }
    if (found.empty()) continue;
    found.push_back(item.path);
    bundleGroups.push_back(found);
  }
}

void PlainSearch::group() {
  Reader reader;
  std::list<File> left(candidates.begin(), candidates.end());
  while (!left.empty()) {
    File item = left.front();
    left.pop_front();
    std::vector<std::list<File>::iterator> sameSize;
    for (auto other = left.begin(); other != left.end(); ++other) {
      if (other->size == item.size) sameSize.push_back(other);
    }
    if (sameSize.empty()) continue;
    if (item.md5 == 0 && !Reader::whole(item, false)) continue;
    if (item.md5_1k == 0) reader.firstKilobyte(item, false);
    bool isAny = false;
    for (const auto& other : sameSize) {
      if (other->md5_1k == 0) reader.firstKilobyte(*other, false);
      if (other->md5_1k != item.md5_1k) continue;
      if (other->md5 == 0 && !Reader::whole(*other, false)) continue;
      if (other->md5 != item.md5) continue;
      copies.push_back(*other);
      left.erase(other);
      isAny = true;
    }
    if (isAny) copies.push_back(item);
  }
}

}  // namespace brisko::test
