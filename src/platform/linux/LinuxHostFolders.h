#pragma once

#include "HostFolders.h"

#include <string>

namespace brisko {

/// Literal paths below the root, and the desktop's base folders beside them.
class LinuxHostFolders : public HostFolders {
 public:
  /// `root` is absolute and normalised without a trailing slash, or empty.
  explicit LinuxHostFolders(std::string root);

  std::string root() const override { return root_; }
  std::string home() const override { return home_; }
  std::string userFolder() const override { return path("/Users/" + user_); }
  std::string volumes() const override;
  std::string temporary() const override;
  std::optional<std::string> variable(std::string_view name) const override;

 private:
  bool isBelowRoot(std::string_view path) const;
  std::string baseFolder(const char* variable, std::string_view below) const;

  std::string root_;
  std::string user_;
  std::string home_;
};

}  // namespace brisko
