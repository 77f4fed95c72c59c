#pragma once

#include "FileObj.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace brisko {

/// What came of one item.
struct EraserOutcome {
  bool isSuccess = false;
  std::string reason;              ///< one line for people; empty on success
  std::vector<std::string> notes;  ///< why overwriting may not reach what the medium holds
};

/// The work on one item of a run, in the background: what is looked at before, the tool, and what
/// has to be put back when the item stays.
class EraserTask {
 public:
  /// `options` is the tool's option text, `names` how many names a file may have (0: any number).
  EraserTask(const FileObj& item, std::string options, std::uint64_t names)
      : item_(item), options_(std::move(options)), names_(names) {}

  /// Overwrites and removes a file with the tool. Blocks until that has ended.
  EraserOutcome erase(const std::atomic<bool>& terminated);
  /// Deletes what holds nothing to overwrite: an empty file, a device, a bundle. A file that has
  /// got content since it was listed is erased.
  EraserOutcome removeItem(const std::atomic<bool>& terminated);
  /// Removes the folder if it is empty.
  EraserOutcome removeFolder() const;

 private:
  EraserOutcome refusal() const;
  EraserOutcome outcomeOf(int status, const std::string& errors) const;

  const FileObj& item_;
  std::string options_;
  std::uint64_t names_;
};

/// Whether the file can be written: opened for writing, or given the mode 0600 for it. False only
/// when neither is permitted. A link counts as writable and is not followed.
bool checkPermissions(const std::string& path);

}  // namespace brisko
