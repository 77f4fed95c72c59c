#pragma once

#include "FileObj.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brisko {

struct EraserOutcome;

/// Who is told of a run. Called on the main thread.
class RemoveFileAndFolderDelegate {
 public:
  virtual ~RemoveFileAndFolderDelegate() = default;
  /// The item at work and how far the run is, 0 to 98.
  virtual void removeProgress(const std::string& path, float progress) = 0;
  /// An item cannot be erased.
  virtual void haveFailEraser() = 0;
  /// The run is over: every item that was worked on, with its outcome.
  virtual void removeObjEnd(const FileObjs& items) = 0;
};

/// The erasing engine: takes a list, and overwrites and deletes one item after the other, files
/// with the tool "srm", what holds no content by itself.
///
/// The next item starts when a child process has ended, whichever that was, so runs must not
/// overlap with other processes that post their end. Items are worked on in the background;
/// everything else is the main thread's.
class RemoveFileAndFolder : public std::enable_shared_from_this<RemoveFileAndFolder> {
 public:
  /// To be owned by a shared pointer. The delegate may be taken away before the run ends.
  explicit RemoveFileAndFolder(RemoveFileAndFolderDelegate* taker) : delegate(taker) {}
  ~RemoveFileAndFolder();

  /// Starts a run. Each item is logged as "-------::%@".
  void benginToTraskWithArr(FileObjs items);
  /// Ends the process at work; what comes after it is not touched.
  void isCancel();

  /// The preference "EraserTimes", or what `setEraserTimes` says instead; below 1 it is 1.
  int getEraserTimes() const;
  void setEraserTimes(int times) { eraserTimes_ = times; }
  /// Erases files however many names they have.
  void setErasesAllNames(bool all) { erasesAllNames_ = all; }

  /// The tool's options for an item: one pass on a solid-state disk, else by the number of passes.
  std::string optionsFor(const FileObj& item) const;

  /// Why overwriting may not reach what the medium holds, each reason once.
  const std::vector<std::string>& notes() const { return notes_; }

  std::string filePathStr;  ///< of the item at work
  FileObjs allFilesArr;     ///< the items, in order
  FileObjs deleteErrorArr;  ///< what was worked on, in order; "Success" or "Fail" each
  std::uint32_t idx = 0;    ///< of the item at work
  RemoveFileAndFolderDelegate* delegate;

 private:
  enum class Work { tool, item, bundle, folder };

  void runTaskWithPath();
  Work workFor(std::size_t place) const;
  std::uint64_t namesFor(const FileObj& item) const;
  void taskEnded(const std::shared_ptr<FileObj>& item, Work work, const EraserOutcome& outcome);
  void doneErasing();
  void report(float progress);

  bool cancelled_ = false;
  std::shared_ptr<std::atomic<bool>> pErase_;  ///< the work on the item, by what asks it to end
  int observation_ = 0;
  std::optional<int> eraserTimes_;
  bool erasesAllNames_ = false;
  std::vector<std::string> notes_;
  /// How many names of a file with several are in the list.
  std::map<std::pair<std::uint64_t, std::uint64_t>, std::uint64_t> listedNames_;
};

}  // namespace brisko
