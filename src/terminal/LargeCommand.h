#pragma once

#include "Command.h"
#include "FileNode.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace brisko {

class Controller;

/// "brisko large": what fills a folder, largest first, and the removal of entries that it lists.
class LargeCommand : public Command {
 public:
  const char* name() const override { return "large"; }
  const char* summary() const override {
    return "List what fills a folder, largest first, and remove entries of that list";
  }
  void declare(CLI::App& app) override;
  int execute(const GlobalOptions& global) override;

 private:
  std::string scannedFolder() const;
  void scan(Controller& controller, const std::string& folder) const;
  std::vector<FileNode*> wanted(Controller& controller, const std::string& folder) const;
  FileNode* listed(Controller& controller, const std::string& folder,
                   const std::string& path) const;
  int remove(Controller& controller, const std::vector<FileNode*>& nodes,
             const GlobalOptions& global) const;

  std::string folder_;
  std::size_t depth_ = 1;
  std::size_t top_ = 0;
  std::uint32_t olderThan_ = 0;
  std::uint64_t minSize_ = 0;
  std::vector<std::string> remove_;
  CLI::App* app_ = nullptr;
};

}  // namespace brisko
