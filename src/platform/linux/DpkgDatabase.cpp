#include "DpkgDatabase.h"

#include "FileDescriptor.h"
#include "RegularFile.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace brisko {
namespace {

constexpr std::size_t kMaximumStatus = 256u << 20;
constexpr std::size_t kMaximumList = 64u << 20;
constexpr std::size_t kMaximumName = 128;

bool isLowerOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

std::string_view nextLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

// One paragraph of the status file, as far as it is of interest.
struct Paragraph {
  std::string_view package, status, architecture, version, size, priority, essential, isProtected,
      important;

  // "install ok installed", "hold ok installed" …: what was removed but for its settings stays on
  // record in another state.
  bool isInstalled() const { return !package.empty() && status.ends_with(" installed"); }
  bool isEssential() const {
    return essential == "yes" || isProtected == "yes" || important == "yes" ||
           priority == "required";
  }
};

Paragraph nextParagraph(std::string_view& text) {
  Paragraph found;
  const std::pair<std::string_view, std::string_view*> fields[] = {
      {"Package: ", &found.package},           {"Status: ", &found.status},
      {"Architecture: ", &found.architecture}, {"Version: ", &found.version},
      {"Installed-Size: ", &found.size},       {"Priority: ", &found.priority},
      {"Essential: ", &found.essential},       {"Protected: ", &found.isProtected},
      {"Important: ", &found.important}};
  while (!text.empty()) {
    const std::string_view line = nextLine(text);
    if (line.empty()) break;
    if (line.front() == ' ') continue;
    for (const auto& [key, value] : fields) {
      if (line.starts_with(key)) *value = line.substr(key.size());
    }
  }
  return found;
}

// Reads the lists one after the other into one buffer.
class ListReader {
 public:
  explicit ListReader(const std::string& folder)
      : folder_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}

  std::vector<std::string> names() const {
    std::vector<std::string> all;
    const int again = folder_ ? ::fcntl(folder_.get(), F_DUPFD_CLOEXEC, 0) : -1;
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(again < 0 ? nullptr : ::fdopendir(again),
                                                     ::closedir);
    if (!stream) return all;
    while (const dirent* entry = ::readdir(stream.get())) {
      const std::string_view name = entry->d_name;
      if (name.ends_with(".list")) all.emplace_back(name);
    }
    return all;
  }

  // Empty when it cannot be read. Holds until the next one is read.
  std::string_view read(const std::string& name, std::int64_t& date) {
    const FileDescriptor file(
        ::openat(folder_.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status;
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
    const auto size = static_cast<std::size_t>(status.st_size);
    if (size > kMaximumList) return {};
    date = status.st_mtime;
    if (buffer_.size() < size) buffer_.resize(size * 2);
    const ssize_t got = ::read(file.get(), buffer_.data(), size);
    return {buffer_.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0))};
  }

 private:
  FileDescriptor folder_;
  std::string buffer_;
};

// Calls `found` for each line that ends with the suffix.
template <typename Found>
void linesWith(std::string_view list, std::string_view suffix, const Found& found) {
  const std::string end = std::string(suffix) + "\n";
  for (std::size_t from = 0; from < list.size();) {
    const auto* hit = static_cast<const char*>(
        ::memmem(list.data() + from, list.size() - from, end.data(), end.size()));
    if (hit == nullptr) return;
    const std::size_t last = static_cast<std::size_t>(hit - list.data()) + suffix.size();
    const std::size_t before = last == 0 ? std::string_view::npos : list.rfind('\n', last - 1);
    const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
    found(list.substr(begin, last - begin));
    from = last + 1;
  }
}

}  // namespace

bool isPackageName(std::string_view name) {
  const std::size_t colon = name.find(':');
  const std::string_view package = name.substr(0, colon);
  if (package.size() < 2 || name.size() > kMaximumName || !isLowerOrDigit(package[0])) return false;
  const auto isInName = [](char c) {
    return isLowerOrDigit(c) || c == '+' || c == '-' || c == '.';
  };
  if (!std::all_of(package.begin(), package.end(), isInName)) return false;
  if (colon == std::string_view::npos) return true;
  const std::string_view architecture = name.substr(colon + 1);
  return !architecture.empty() && isLowerOrDigit(architecture[0]) &&
         std::all_of(architecture.begin(), architecture.end(),
                     [](char c) { return isLowerOrDigit(c) || c == '-'; });
}

DpkgDatabase::DpkgDatabase(std::string folder) : folder_(std::move(folder)) {
  int error = 0;
  const auto text = readFile(folder_ + "/status", kMaximumStatus, error);
  if (text) readStatus(*text);
}

void DpkgDatabase::readStatus(std::string_view text) {
  std::vector<Paragraph> all;
  std::string_view native;
  while (!text.empty()) {
    all.push_back(nextParagraph(text));
    if (all.back().package == "dpkg") native = all.back().architecture;
  }
  for (const Paragraph& paragraph : all) {
    if (!paragraph.isInstalled()) continue;
    const std::string plain(paragraph.package);
    const std::string full = plain + ":" + std::string(paragraph.architecture);
    const bool isNative = paragraph.architecture == "all" || paragraph.architecture == native ||
                          native.empty() || paragraph.architecture.empty();
    DpkgPackage package;
    package.name = isNative ? plain : full;
    if (!isPackageName(package.name)) continue;
    package.version = paragraph.version;
    std::uint64_t kibibytes = 0;
    std::from_chars(paragraph.size.data(), paragraph.size.data() + paragraph.size.size(),
                    kibibytes);
    package.bytes = kibibytes * 1024;
    package.isEssential = paragraph.isEssential();
    namesByListName_.emplace(plain, package.name);
    namesByListName_.emplace(full, package.name);
    packages_.emplace(package.name, std::move(package));
  }
}

const DpkgPackage* DpkgDatabase::find(std::string_view name) const {
  const auto found = packages_.find(name);
  return found == packages_.end() ? nullptr : &found->second;
}

const DpkgPackage* DpkgDatabase::ofList(std::string_view listName) const {
  const auto found = namesByListName_.find(listName);
  return found == namesByListName_.end() ? nullptr : find(found->second);
}

std::unordered_map<std::string, DpkgDatabase::Owner> DpkgDatabase::owners(
    const std::vector<std::string>& paths, std::string_view suffix) const {
  std::unordered_map<std::string, Owner> all;
  std::unordered_map<std::string_view, const std::string*> wanted;
  for (const std::string& path : paths)
    wanted.emplace(path, &path);
  if (wanted.empty()) return all;
  ListReader reader(folder_ + "/info");
  for (const std::string& name : reader.names()) {
    std::int64_t date = 0;
    const std::string_view list = reader.read(name, date);
    linesWith(list, suffix, [&](std::string_view line) {
      const auto found = wanted.find(line);
      if (found == wanted.end()) return;
      const DpkgPackage* package =
          ofList(std::string_view(name).substr(0, name.size() - sizeof ".list" + 1));
      if (package != nullptr) all.emplace(*found->second, Owner{package, date});
    });
  }
  return all;
}

}  // namespace brisko
