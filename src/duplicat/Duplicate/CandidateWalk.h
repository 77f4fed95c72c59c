#pragma once

#include "Catalog.h"
#include "ReaderCrew.h"
#include "getFileList.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// The walk behind `getFileList`: several threads list folders and look at files, each folder's
/// content noted so that the list can be read off afterwards in listing order.
///
/// Candidates are chosen as they are met: nothing is kept of what cannot become one.
class CandidateWalk {
 public:
  CandidateWalk(getFileList& owner, CandidateStore& store, std::uint64_t limit);
  ~CandidateWalk();

  /// False when the folder at `path` cannot be listed.
  bool run(const std::string& path, std::vector<std::string>& bundles);

 private:
  struct Segment;
  struct Folder;
  struct Task;
  struct Worker;
  using Handle = std::shared_ptr<Catalog::Folder>;
  /// Which of a bundle's members count when one larger than the limit is looked for.
  enum class Counts { itself, allBelow, allButTopFolders };

  bool listTopLevel(const std::string& path);
  void work(ReaderCrew::Member& member);
  bool nextTask(ReaderCrew::Member& member, Task& task);
  void finish(std::vector<Task>& further);

  Handle open(const Task& task, int& error);
  void perform(Worker& worker, Task& task, ReaderCrew::Member& member);
  bool readFolder(Worker& worker, Folder& folder, const Handle& handle, ReaderCrew::Member& member);
  bool handOut(Folder& folder, const Handle& handle, Segment& segment, CatalogBatch& batch);
  void examine(Worker& worker, Folder& folder, const Handle& handle, Segment& segment,
               CatalogBatch& batch, ReaderCrew::Member& member);
  void examineTopLevel(Worker& worker, Folder& root, const Handle& handle, Segment& segment,
                       CatalogBatch& batch);

  void addFile(Worker& worker, Folder& folder, Segment& segment, const CatalogItem& item);
  void addFolder(Worker& worker, Folder& folder, Segment& segment, std::string_view name,
                 const Handle& handle, bool isLink);
  static Folder& newFolder(Worker& worker, const Folder& parent, Segment& segment,
                           std::string_view name);
  static const CandidateFolder* folderOnDevice(Worker& worker, const CandidateFolder& folder,
                                               std::uint64_t device);
  bool bundleQualifies(const std::string& path, Counts counts);
  bool leavesOut(std::string_view name) const;
  void skip(const std::string& path, int error);
  void collect(std::vector<std::string>& bundles);

  getFileList& owner_;
  CandidateStore& store_;
  const std::uint64_t limit_;
  bool isSystemRoot_ = false;
  bool isHidden_ = false;    ///< the folder searched lies in a hidden one, and those are left out
  bool isInBundle_ = false;  ///< so everything below it belongs to that bundle

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Task> tasks_;     ///< the last is taken first, which keeps few folders open
  std::size_t unfinished_ = 0;  ///< tasks queued or running
  std::size_t handedOut_ = 0;   ///< queued tasks that have a batch
  std::vector<std::unique_ptr<Worker>> workers_;
  Folder* root_ = nullptr;
};

}  // namespace brisko
