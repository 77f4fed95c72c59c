// brisko-size FOLDER…: the logical size of each tree, by the walk that the program uses.

#include "FolderSize.h"
#include "Host.h"

#include <cstdio>
#include <cstring>

int main(int argc, char** argv) {
  int status = 0;
  for (int i = 1; i < argc; ++i) {
    int error = 0;
    const auto folder = brisko::Host::current().catalog->open(argv[i], error);
    if (!folder) {
      std::fprintf(stderr, "brisko-size: %s: %s\n", argv[i], std::strerror(error));
      status = 1;
      continue;
    }
    const brisko::FolderSize size = brisko::folderSize(*folder);
    std::printf("%llu\t%llu files\t%llu folders\t%llu skipped\t%s\n",
                static_cast<unsigned long long>(size.total()),
                static_cast<unsigned long long>(size.files),
                static_cast<unsigned long long>(size.folders),
                static_cast<unsigned long long>(size.skippedFolders), argv[i]);
  }
  return status;
}
