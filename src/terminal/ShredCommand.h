#pragma once

#include "Command.h"
#include "FileShareModel.h"

#include <string>
#include <vector>

namespace brisko {

/// "brisko shred": overwrites files and folders and removes them.
class ShredCommand : public Command {
 public:
  const char* name() const override { return "shred"; }
  const char* summary() const override {
    return "Overwrite files and folders so that they cannot be read back, and remove them";
  }
  void declare(CLI::App& app) override;
  int execute(const GlobalOptions& global) override;

 private:
  void checkPaths() const;
  bool plan(FileShareModel& model) const;
  bool isWanted(const FileShareModel& model, const GlobalOptions& global) const;
  void run(FileShareModel& model) const;
  bool write(const FileShareModel& model, const GlobalOptions& global, bool isPlan) const;

  std::vector<std::string> paths_;
  int times_ = 0;
  bool allNames_ = false;
  std::vector<FileShareRefusal> refused_;
};

}  // namespace brisko
