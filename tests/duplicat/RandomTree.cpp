#include "RandomTree.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace brisko::test {
namespace {

void link(const std::string& target, const std::string& path) {
  std::error_code isThereAlready;
  fs::create_symlink(target, path, isThereAlready);
}

}  // namespace

std::string RandomTree::name() {
  static const std::array<const char*, 8> kStems = {"a",      ".hidden",   "photo", "\xff\xfe",
                                                    "ü name", "new\nline", "b",     "é%s"};
  static const std::array<const char*, 6> kEndings = {"", ".jpg", ".TXT", ".tar.gz", ".appx", "."};
  return std::string(kStems[below(kStems.size())]) + std::to_string(count_++) +
         kEndings[below(kEndings.size())];
}

// A few sizes around the borders of what is read at once, each in a few variants.
std::string RandomTree::content() {
  static const std::array<std::size_t, 12> kSizes = {0,    1,    3,     40,    1023,  1024,
                                                     1025, 5000, 16384, 16385, 40000, 1100000};
  const std::size_t rank = below(below(8) == 0 ? kSizes.size() : kSizes.size() - 1);
  std::string made(kSizes[rank], static_cast<char>('a' + below(2)));
  if (made.empty()) return made;
  const std::array<std::size_t, 6> places = {
      0, 1023, 1024, 16384, made.size() / 2, made.size() - 1};
  const std::size_t place = places[below(places.size())];
  if (below(2) == 0 && place < made.size()) made[place] = 'x';
  return made;
}

void RandomTree::addFile(const std::string& path) {
  std::ofstream(path, std::ios::binary) << content();
  if (locksSome && below(6) == 0) chmod(path.c_str(), 0);
}

// Bundles of one kind hold the same contents, now and then but for one file.
void RandomTree::addBundle(const std::string& path, std::uint32_t kind) {
  fs::create_directories(path + "/Contents/Inner.app");
  std::array<std::string, 4> names = {"/Contents/x", "/Contents/y", "/Contents/Inner.app/z", "/w"};
  std::rotate(names.begin(), names.begin() + below(2), names.end());
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::size_t size = i * 700 * (kind % 3);
    std::string bytes(size, static_cast<char>('k' + kind + i));
    if (below(12) == 0 && size > 0) bytes[size / 2] = '!';
    std::ofstream(path + names[i], std::ios::binary) << bytes;
  }
  if (kind % 2 == 0) link(below(5) == 0 ? "z" : "x", path + "/Contents/link");
  if (below(6) == 0) link("Contents", path + "/folder-link");
  if (locksSome && below(5) == 0) chmod((path + "/Contents/x").c_str(), 0);
  if (locksSome && below(7) == 0) chmod((path + "/Contents/Inner.app").c_str(), 0);
}

void RandomTree::fill(const std::string& folder, int depth) {
  const std::uint32_t entries = 2 + below(9);
  for (std::uint32_t i = 0; i < entries; ++i) {
    const std::string path = folder + "/" + name();
    switch (below(depth > 0 ? 12 : 9)) {
      case 0:
        if (mkfifo(path.c_str(), 0644) == 0) break;
        [[fallthrough]];
      case 1:
        link("elsewhere", path);
        break;
      case 2:
        if (below(2) == 0) addBundle(path + (below(2) == 0 ? ".app" : ".APP"), below(3));
        break;
      case 9:
      case 10:
      case 11:
        fs::create_directory(path);
        fill(path, depth - 1);
        if (locksSome && below(8) == 0) chmod(path.c_str(), 0);
        break;
      default:
        addFile(path);
    }
  }
}

void RandomTree::addTopLevelLinks(const std::string& root) {
  for (const auto& entry : fs::directory_iterator(root)) {
    if (below(4) == 0) link(entry.path().filename(), root + "/" + name());
  }
  link("missing", root + "/dangling");
  if (below(3) == 0) std::ofstream(root + "/file.app") << "no folder";
}

void RandomTree::make(const std::string& root) {
  fill(root, 3);
  fill(root, 2);
  addTopLevelLinks(root);
}

}  // namespace brisko::test
