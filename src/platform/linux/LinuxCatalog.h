#pragma once

#include "Catalog.h"

namespace brisko {

/// Folders by descriptor: getdents64 for names, statx relative to the folder for facts.
class LinuxCatalog : public Catalog {
 public:
  std::unique_ptr<Folder> open(const std::string& path, int& error) override;
  CatalogItem information(const std::string& path) override;
};

}  // namespace brisko
