// brisko-duplicates FOLDER
//
// The duplicate search without the program around it: prints each group's paths and an empty line.

#include "DuplicateFilesOpt.h"

#include <cstdio>
#include <memory>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: brisko-duplicates FOLDER\n", stderr);
    return 2;
  }
  brisko::DuplicateFilesOpt search;
  search.beginSearchAtPath(argv[1], 0);
  std::unique_ptr<brisko::DuplicateTree> tree;
  if (!search.getDuplicateFiles(tree)) return 0;
  for (const brisko::SimpleTreeNode* group : tree->root().children) {
    for (const brisko::SimpleTreeNode* leaf : group->children)
      std::puts(leaf->nodeData.name().c_str());
    std::puts("");
  }
  return 0;
}
