#include "FolderSize.h"

#include <string>
#include <utility>
#include <vector>

namespace brisko {

FolderSize folderSize(Catalog::Folder& folder, const std::atomic<bool>* cancel) {
  FolderSize size;
  CatalogBatch batch;
  std::vector<std::string> names;
  while (folder.read(batch, 0)) {
    if (cancel != nullptr && *cancel) return size.isCancelled = true, size;
    folder.information(batch.items);
    for (const CatalogItem& item : batch.items) {
      size.dataSize += item.dataSize;
      if (item.kind == FileKind::directory) names.emplace_back(item.name);
    }
  }
  for (const std::string& name : names) {
    int error = 0;
    const auto child = folder.open(name, error);
    if (child) size.dataSize += folderSize(*child, cancel).dataSize;
  }
  return size;
}

}  // namespace brisko
