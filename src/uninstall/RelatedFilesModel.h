#pragma once

#include "AppSizes.h"
#include "AsMDeleteExecutor.h"
#include "InstalledNames.h"
#include "ReviewGroup.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

namespace brisko {

/// An entry that stayed, and why.
struct UninstallFailure {
  std::string path;
  std::string reason;
};

/// Told of changes, always on the main thread.
class RelatedFilesModelListener {
 public:
  virtual ~RelatedFilesModelListener() = default;
  virtual void groupFilled(std::size_t /*group*/) {}  ///< its entries are there now
  virtual void ticksChanged() {}                      ///< boxes, counts, the remove button
  virtual void sizesChanged() {}                      ///< sizes of any rows
  virtual void progressChanged() {}                   ///< percentage and path
  virtual void removalEnded() {}                      ///< the end message is to be shown
};

/// The review window and the removal that follows it, without their widgets: every state, text and
/// rule that both faces show. Belongs to the main thread; what belongs to an item is looked for,
/// measured and removed in the background.
///
/// Whoever shows it waits 0.5 s between the user's "remove" and `doRemove`.
class RelatedFilesModel {
 public:
  enum class Tick : int { none, some, all, locked };

  RelatedFilesModel();
  ~RelatedFilesModel();
  RelatedFilesModel(const RelatedFilesModel&) = delete;
  RelatedFilesModel& operator=(const RelatedFilesModel&) = delete;

  /// One listener at a time; it must outlive the model or be taken off with null.
  void setListener(RelatedFilesModelListener* listener) { listener_ = listener; }

  // The review.

  /// Shows one group for each chosen item, and fills them one after the other. `installed` is
  /// everything that is installed, to tell what is shared.
  void setAllRelaltedFiles(const AppItems& chosen, AppItems installed);
  const std::vector<ReviewGroup>& allRelaltedFiles() const { return groups_; }
  /// Whether everything has been looked for; until then nothing can be removed.
  bool isComplete() const;
  bool isMeasured() const { return sizes_->pending() == 0; }

  Tick tick(std::size_t group) const;
  Tick tick(const AppItem& entry) const;
  /// "sel", "halfsel", "unsel", and "disable" for what must stay.
  const char* boxImage(std::size_t group) const;
  const char* boxImage(const AppItem& entry) const;
  /// The sum of the group's sizes as shown, ticked or not.
  std::string sizeText(std::size_t group) const;

  /// The box of an entry, or of a group: ticks all of it when anything is missing, else nothing.
  void selectRemoveLanguage(const AppItem& entry);
  void selectRemoveLanguage(std::size_t group);

  /// The ticked entries, in the order of ticking. They are removed in that of the review.
  const AppItems& selectDeletePath() const { return selectDeletePath_; }
  bool uninstallButtonEnabled() const { return !selectDeletePath_.empty() && isComplete(); }
  std::uint64_t selectedBytes() const;  ///< as listed; what goes but once counts once
  std::size_t selectedCount() const;    ///< likewise
  /// What is to be known before it is removed: running applications, and refusals.
  std::vector<std::string> warnings() const;

  // The removal.

  /// Removes what is ticked, once it is measured. Nothing for no ticks, or while at it.
  void doRemove();
  /// Ends it before the next entry; for the terminal's interrupt.
  void stop();

  bool isRemoving() const { return isRemoving_; }
  bool isEnded() const { return isEnded_; }
  std::int32_t allSelectCount() const { return allSelectCount_; }
  std::int32_t deleteCount() const { return deleteCount_; }
  std::uint64_t totalSize() const { return totalSize_; }  ///< bytes, of sizes as shown
  bool isFail() const { return isFail_; }
  /// What the bar shows: 10 at first, then (deleteCount / allSelectCount) × 100 in whole numbers.
  int progressValue() const { return progress_; }
  const std::string& pathLabel() const { return pathLabel_; }
  /// "Brisko has successfully removed the selected application(s) …".
  std::string messageLabel() const;
  std::string freedText() const;                            ///< `totalSize` as text
  std::uint64_t freedBytes() const { return freedBytes_; }  ///< what the file system gave back
  const std::vector<UninstallFailure>& failures() const { return failures_; }
  bool wasStopped() const { return wasStopped_; }
  /// Whether the package of an application of the host went, by itself or along with another.
  bool hasRemovedPackage(const AMAppItem& listed) const;

  /// The user has seen the end, or wants no removal: forgets what is reviewed.
  void uninstallEnd();

 private:
  struct Building;
  class Bridge;
  using Tell = void (RelatedFilesModelListener::*)();

  void tell(Tell what);
  void show(std::vector<ReviewGroup> groups);
  void fill(std::size_t group, ReviewGroup filled);
  void select(const AppItem& entry);
  void deselect(const AppItem& entry);
  void startExecutor();
  void deleteRelatedFile(const AppItem& item, const RemovalReport& report);
  void deleteRelatedFileFail(const AppItem& item, const RemovalReport& report);
  void packageProgressed(const AppItem& item, double part);
  void advance(const AppItem& item, const RemovalReport& report);
  void deleteEnded();

  RelatedFilesModelListener* listener_ = nullptr;
  std::vector<ReviewGroup> groups_;
  std::shared_ptr<Building> building_;
  std::unique_ptr<AppSizes> sizes_;
  AppItems selectDeletePath_;
  std::unordered_set<const AMAppItem*> ticked_;

  AppItems selectedRelatedFiles_;
  std::shared_ptr<Bridge> bridge_;
  std::shared_ptr<AsMDeleteExecutor> deleteExecutor_;
  bool isRemoving_ = false;
  bool isWaitingForSizes_ = false;
  bool isEnded_ = false;
  bool isFail_ = false;
  bool wasStopped_ = false;
  std::int32_t allSelectCount_ = 0;
  std::int32_t deleteCount_ = 0;
  std::uint64_t totalSize_ = 0;
  std::uint64_t freedBytes_ = 0;
  int progress_ = 0;
  std::string pathLabel_;
  std::vector<UninstallFailure> failures_;
  std::set<std::string> gonePackages_;  ///< their keys
};

}  // namespace brisko
