// brisko-corpus FOLDER [--seed N] [--folders N] [--files N] [--fan N] [--max-size N]
//
// Makes a tree of empty-looking files for the benchmarks: the same seed gives the same names, shape
// and sizes. Sizes are logical only (holes), so that a million files take no space but their
// inodes.

#include "FileDescriptor.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <random>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

using brisko::FileDescriptor;

struct Shape {
  std::uint64_t seed = 1;
  std::uint64_t folders = 50'000;
  std::uint64_t files = 1'000'000;
  std::uint64_t fan = 8;  // subfolders of a folder, at most
  std::uint64_t maximumSize = 65'536;
};

class Corpus {
 public:
  explicit Corpus(const Shape& shape) : shape_(shape), random_(shape.seed) {}

  // Folder after folder in breadth, so that the tree is as deep as its fan makes it.
  bool make(const std::string& path) {
    if (mkdir(path.c_str(), 0755) != 0) return failed(path);
    std::deque<std::string> open = {path};
    std::uint64_t folders = 0;
    std::uint64_t files = 0;
    for (std::uint64_t visited = 1; !open.empty(); ++visited) {
      const std::string folder = std::move(open.front());
      open.pop_front();
      const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
      if (!descriptor) return failed(folder);
      // What the folders so far should hold together, with some of its own more or less for each.
      const std::uint64_t due = shape_.files * visited / (shape_.folders + 1);
      const std::uint64_t jitter = shape_.folders == 0 ? 0 : random_() % 9;
      const bool isLast = folders == shape_.folders && open.empty();
      const std::uint64_t until = isLast ? shape_.files : std::min(shape_.files, due + jitter);
      for (; files < until; ++files) {
        if (!makeFile(descriptor.get(), files)) return failed(folder);
      }
      for (std::uint64_t i = 0; i < shape_.fan && folders < shape_.folders; ++i, ++folders) {
        open.push_back(fmt::format("{}/folder-{:x}-{}", folder, random_() & 0xFFFFU, folders));
        if (mkdir(open.back().c_str(), 0755) != 0) return failed(open.back());
      }
    }
    return true;
  }

 private:
  static bool failed(const std::string& path) {
    std::fprintf(stderr, "brisko-corpus: %s: %s\n", path.c_str(), std::strerror(errno));
    return false;
  }

  bool makeFile(int folder, std::uint64_t number) {
    const std::string name = fmt::format("file-{:08x}-{}.dat", random_() & 0xFFFFFFFFU, number);
    const FileDescriptor file(
        openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    return file && ftruncate(file.get(), static_cast<off_t>(random_() % shape_.maximumSize)) == 0;
  }

  Shape shape_;
  std::mt19937_64 random_;
};

int usage() {
  std::fputs(
      "usage: brisko-corpus FOLDER [--seed N] [--folders N] [--files N] [--fan N] [--max-size N]\n"
      "FOLDER must not exist. --folders 0 makes one wide folder; --fan 1 makes a chain.\n",
      stderr);
  return 2;
}

bool parse(int argc, char** argv, Shape& shape) {
  for (int i = 2; i + 1 < argc; i += 2) {
    const std::string_view name = argv[i];
    std::uint64_t* const value = name == "--seed"       ? &shape.seed
                                 : name == "--folders"  ? &shape.folders
                                 : name == "--files"    ? &shape.files
                                 : name == "--fan"      ? &shape.fan
                                 : name == "--max-size" ? &shape.maximumSize
                                                        : nullptr;
    char* end = nullptr;
    const std::uint64_t number = std::strtoull(argv[i + 1], &end, 10);
    if (value == nullptr || *end != '\0' || end == argv[i + 1]) return false;
    *value = number;
  }
  return argc >= 2 && argc % 2 == 0 && argv[1][0] != '-' && shape.fan > 0 && shape.maximumSize > 0;
}

}  // namespace

int main(int argc, char** argv) {
  Shape shape;
  if (!parse(argc, argv, shape)) return usage();
  return Corpus(shape).make(argv[1]) ? 0 : 1;
}
