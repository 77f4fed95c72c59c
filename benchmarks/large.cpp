// brisko-large FOLDER: the whole tree of a folder with every level in order, by the engine that the
// program uses, and what it costs in memory.

#include "Controller.h"
#include "Dispatch.h"

#include <cstdio>

using namespace brisko;

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
    return 2;
  }
  Dispatch::attachMainThread();
  Controller controller;
  controller.eumeAllRootFileNodeWithRootArr(argv[1]);
  Dispatch::runUntil([&] { return !controller.isScanning(); });
  if (controller.root() == nullptr) {
    std::fprintf(stderr, "brisko-large: cannot open %s\n", argv[1]);
    return 1;
  }
  NodeTreeOperator& tree = controller.eumeRoot()->nodeTreeOperator();
  tree.sortAll();
  std::size_t names = 0;
  for (const FileNode* folder : tree.folders()) {
    for (const FileNode* entry : folder->folder->list)
      names += entry->_name().size() + 1;
  }
  const auto entries = static_cast<double>(tree.entries());
  const auto bytes = static_cast<double>(tree.walk()->footprint() - names);
  std::printf("%llu\t%.0f entries\t%.0f bytes an entry above its name\n",
              static_cast<unsigned long long>(controller.root()->size), entries,
              entries > 0 ? bytes / entries : 0);
}
