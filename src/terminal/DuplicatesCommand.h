#pragma once

#include "Command.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace brisko {

class DuplicateModel;

/// "brisko duplicates": finds the files and bundles below a folder that are the same, and removes
/// all but one of each when it is asked to.
class DuplicatesCommand : public Command {
 public:
  const char* name() const override { return "duplicates"; }
  const char* summary() const override {
    return "Find files with the same content, and remove all copies but one";
  }
  void declare(CLI::App& app) override;
  int execute(const GlobalOptions& global) override;

 private:
  std::string searchedFolder() const;
  std::size_t wantedSegment() const;
  void search(DuplicateModel& model) const;
  int remove(DuplicateModel& model, const GlobalOptions& global) const;

  std::string folder_;
  std::string type_;
  bool remove_ = false;
  bool noHidden_ = false;
  bool noSystem_ = false;
  std::uint64_t minSize_ = 1;
};

}  // namespace brisko
