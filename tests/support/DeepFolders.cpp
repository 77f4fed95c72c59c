#include "DeepFolders.h"

#include "FileDescriptor.h"

#include <cstring>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko::test {
namespace {

constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// Everything in the folder but "d", which is a file or an empty folder or holds only files.
void clear(int folder) {
  DIR* stream = fdopendir(openat(folder, ".", kFlags));
  if (stream == nullptr) return;
  while (const dirent* entry = readdir(stream)) {
    const std::string name = entry->d_name;
    if (name == "." || name == ".." || name == "d") continue;
    if (unlinkat(folder, name.c_str(), 0) == 0) continue;
    const FileDescriptor inner(openat(folder, name.c_str(), kFlags));
    if (inner) clear(inner.get());
    unlinkat(folder, name.c_str(), AT_REMOVEDIR);
  }
  closedir(stream);
}

}  // namespace

DeepFolders::DeepFolders(const std::string& folder, int depth,
                         const std::function<void(int descriptor)>& fill)
    : folder_(folder) {
  FileDescriptor at(open(folder.c_str(), kFlags));
  for (int i = 0; i < depth && at; ++i) {
    mkdirat(at.get(), "d", 0755);
    at.reset(openat(at.get(), "d", kFlags));
    fill(at.get());
  }
}

DeepFolders::~DeepFolders() {
  FileDescriptor at(open(folder_.c_str(), kFlags));
  int depth = 0;
  for (FileDescriptor next(openat(at.get(), "d", kFlags)); next;
       next.reset(openat(at.get(), "d", kFlags))) {
    at = std::move(next);
    ++depth;
  }
  for (; depth > 0; --depth) {
    clear(at.get());
    at.reset(openat(at.get(), "..", kFlags));
    unlinkat(at.get(), "d", AT_REMOVEDIR);
  }
}

}  // namespace brisko::test
