// brisko-copies FOLDER KIND [--seed N] [--files N]
//
// Makes a tree with copies in it for the benchmarks of the duplicate search. The same seed gives
// the same names and bytes.
//
//   small    files of 1 to 16 KiB in folders of a hundred, three in ten a copy of an earlier one
//   large    files of 20 to 400 MiB, half of them copies, every fourth copy changed in its last
//   byte one-size files of 4096 bytes with one common first kilobyte, one in ten a copy wide files
//   of 256 bytes to 4 KiB in one folder, one in five a copy

#include "FileDescriptor.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using brisko::FileDescriptor;

struct Kind {
  std::string_view name;
  std::uint64_t files;
  std::uint64_t smallest;
  std::uint64_t largest;
  std::uint64_t perFolder;  // 0: all in one
  unsigned copiesPerHundred;
  std::uint64_t commonHead;  // bytes that all begin with
  bool changesSomeLastBytes;
};

constexpr Kind kKinds[] = {
    {"small", 200'000, 1024, 16 * 1024, 100, 30, 0, false},
    {"large", 30, std::uint64_t{20} << 20, std::uint64_t{400} << 20, 10, 50, 0, true},
    {"one-size", 50'000, 4096, 4096, 100, 10, 1024, false},
    {"wide", 300'000, 256, 4096, 0, 20, 0, false},
};

// A file's bytes follow from its content's number alone, so a copy is made by saying it again.
struct Content {
  std::uint64_t seed = 0;
  std::uint64_t size = 0;
  bool hasChangedEnd = false;
};

class Copies {
 public:
  Copies(const Kind& kind, std::uint64_t seed) : kind_(kind), random_(seed) {}

  bool make(const std::string& path) {
    if (mkdir(path.c_str(), 0755) != 0) return failed(path);
    std::string folder = path;
    for (std::uint64_t i = 0; i < kind_.files; ++i) {
      if (kind_.perFolder != 0 && i % kind_.perFolder == 0) {
        folder = fmt::format("{}/folder-{:x}-{}", path, random_() & 0xFFFFU, i / kind_.perFolder);
        if (mkdir(folder.c_str(), 0755) != 0) return failed(folder);
      }
      const std::string file =
          fmt::format("{}/file-{:08x}-{}.dat", folder, random_() & 0xFFFFFFFFU, i);
      if (!write(file, next())) return failed(file);
    }
    return true;
  }

 private:
  static bool failed(const std::string& path) {
    std::fprintf(stderr, "brisko-copies: %s: %s\n", path.c_str(), std::strerror(errno));
    return false;
  }

  Content next() {
    if (!contents_.empty() && random_() % 100 < kind_.copiesPerHundred) {
      Content copy = contents_[random_() % contents_.size()];
      copy.hasChangedEnd = kind_.changesSomeLastBytes && random_() % 4 == 0;
      return copy;
    }
    const std::uint64_t range = kind_.largest - kind_.smallest + 1;
    contents_.push_back({random_() | 1, kind_.smallest + random_() % range, false});
    return contents_.back();
  }

  // Splitmix: as even as the digests could wish, and faster than any disk.
  void fill(std::uint64_t& state, std::size_t length) {
    piece_.resize((length + 7) / 8 * 8);
    for (std::size_t at = 0; at < length; at += 8) {
      std::uint64_t z = state += 0x9E3779B97F4A7C15;
      z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
      z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
      z ^= z >> 31;
      std::memcpy(piece_.data() + at, &z, 8);
    }
  }

  bool write(const std::string& path, const Content& content) {
    const FileDescriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    std::uint64_t state = content.seed;
    for (std::uint64_t at = 0; file && at < content.size;) {
      const std::size_t length = std::min<std::uint64_t>(content.size - at, std::size_t{1} << 20);
      fill(state, length);
      if (at == 0)
        std::fill_n(piece_.begin(), std::min<std::uint64_t>(kind_.commonHead, length), 'h');
      if (content.hasChangedEnd && at + length == content.size) piece_[length - 1] ^= 1;
      if (::write(file.get(), piece_.data(), length) != static_cast<ssize_t>(length)) return false;
      at += length;
    }
    return static_cast<bool>(file);
  }

  Kind kind_;
  std::mt19937_64 random_;
  std::vector<Content> contents_;
  std::vector<char> piece_;
};

int usage() {
  std::fputs(
      "usage: brisko-copies FOLDER small|large|one-size|wide [--seed N] [--files N]\n"
      "FOLDER must not exist.\n",
      stderr);
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3 || argc % 2 == 0) return usage();
  const auto* known = std::find_if(std::begin(kKinds), std::end(kKinds),
                                   [&](const Kind& each) { return each.name == argv[2]; });
  if (known == std::end(kKinds)) return usage();
  Kind kind = *known;
  std::uint64_t seed = 1;
  for (int i = 3; i + 1 < argc; i += 2) {
    const std::string_view name = argv[i];
    char* end = nullptr;
    const std::uint64_t number = std::strtoull(argv[i + 1], &end, 10);
    if (*end != '\0' || end == argv[i + 1] || (name != "--seed" && name != "--files"))
      return usage();
    (name == "--seed" ? seed : kind.files) = number;
  }
  return Copies(kind, seed).make(argv[1]) ? 0 : 1;
}
