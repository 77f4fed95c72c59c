#pragma once

#include "RemoveFileAndFolder.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// A number of passes that can be chosen, with one sentence on what they are.
struct EraserChoice {
  int times;
  const char* title;
  const char* sentence;
};

inline constexpr std::array<EraserChoice, 4> kEraserChoices = {{
    {1, "1 pass",
     "Random bytes once, then zeroes: enough for every disk of the last twenty years."},
    {3, "3 passes",
     "Random bytes twice, then zeroes: the scheme of the U.S. Department of Energy."},
    {7, "7 passes",
     "Characters, their complements and random bytes, then zeroes: the scheme of the U.S. "
     "Department of Defense."},
    {35, "35 passes",
     "Gutmann's patterns for the encodings of very old disks, then zeroes: the slowest by far."},
}};

/// A path that was not taken into the list, and why, in one line.
struct FileShareRefusal {
  std::string path;
  std::string reason;
};

/// Told when something that is shown has changed. On the main thread.
class FileShareModelListener {
 public:
  virtual ~FileShareModelListener() = default;
  virtual void listChanged() {}
  virtual void pageChanged() {}
  /// What a run would erase is known: `planCount`, `planBytes`.
  virtual void planReady() {}
  virtual void changeProgressValue(int /*percentage*/, const std::string& /*path*/) {}
  /// The run is over; `isFailedEraser` and `errorString` say how.
  virtual void showEndShred() {}
};

/// What the shredder's page shows and the terminal prints: the list, the plan, the run, the
/// outcome. Main thread only; folders are expanded and items erased in the background.
class FileShareModel : private RemoveFileAndFolderDelegate {
 public:
  FileShareModel();
  ~FileShareModel() override;
  FileShareModel(const FileShareModel&) = delete;
  FileShareModel& operator=(const FileShareModel&) = delete;

  void setListener(FileShareModelListener* listener) { listener_ = listener; }

  /// Adds what is at the paths, ticked, each item once. Gives back what was not added and why: it
  /// is not there, or must never be erased.
  std::vector<FileShareRefusal> addFileToArr(const std::vector<std::string>& paths);
  /// Whether one of these lies on an NTFS volume, which can often only be read here.
  static bool isAnyOnNtfs(const std::vector<std::string>& paths);
  /// Takes a row out of the list; nothing on the disk changes.
  void removeFromList(std::size_t row);
  void emptyListButtonAction();

  /// The outcomes of the last run first, then what is to be erased.
  std::size_t rowCount() const { return deleteErrorArr_.size() + valueArr_.size(); }
  const FileObj& row(std::size_t row) const;
  /// A row with an outcome has no box any more.
  bool isOutcome(std::size_t row) const { return row < deleteErrorArr_.size(); }
  void toggle(std::size_t row);
  void setAllSelectOrNoSelect(bool select);
  /// "sel", "halfsel" or "unsel".
  const char* selectAllImage() const;
  std::size_t selectedCount() const;

  /// Expands what is ticked, in the background; `planReady` follows, unless that was cancelled.
  void preparePlan();
  void cancelPlan();
  bool isPlanning() const { return planning_ != nullptr; }
  /// Items below and with the ticked ones, and the bytes of the files.
  std::size_t planCount() const { return plan_.size(); }
  std::uint64_t planBytes() const;
  const FileObjs& plan() const { return plan_; }
  /// One of the items lies on a solid-state disk, where the number of passes does not count.
  bool hasSolidState() const;

  /// Erases what was planned.
  void doDeleteButtonClick();
  void cancelShred();
  bool isShredding() const { return removeFileAndFolder_ != nullptr; }

  /// False while something is expanded or erased.
  bool isCanClick() const { return !isPlanning() && !isShredding(); }
  bool isFailedEraser() const { return isFailedEraser_; }
  bool isCancel() const { return isCancel_; }
  /// Why the run did not go through; empty when it did.
  const std::string& errorString() const { return errorString_; }
  const FileObjs& deleteErrorArr() const { return deleteErrorArr_; }
  const FileObjs& valueArr() const { return valueArr_; }
  const std::vector<std::string>& notes() const { return notes_; }

  /// The preference; 1 when it is missing or below.
  int eraserTimes() const;
  void setEraserTimes(int times);
  /// For this model alone, whatever the preference says.
  void overrideEraserTimes(int times) { timesForRun_ = times; }
  void setErasesAllNames(bool all) { erasesAllNames_ = all; }

 private:
  struct Planning;

  void removeProgress(const std::string& path, float progress) override;
  void haveFailEraser() override;
  void removeObjEnd(const FileObjs& items) override;
  void settleOutcomes(const FileObjs& items);
  void tell(void (FileShareModelListener::*what)());

  FileShareModelListener* listener_ = nullptr;
  FileObjs valueArr_;
  FileObjs deleteErrorArr_;
  FileObjs plan_;
  std::shared_ptr<Planning> planning_;
  std::shared_ptr<RemoveFileAndFolder> removeFileAndFolder_;
  std::string errorString_;
  bool isFailedEraser_ = false;
  bool isCancel_ = false;
  std::vector<std::string> notes_;
  std::optional<int> timesForRun_;
  bool erasesAllNames_ = false;
};

}  // namespace brisko
