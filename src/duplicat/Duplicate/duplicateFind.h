#pragma once

#include "CandidateStore.h"
#include "CurrentPath.h"
#include "FindDuplicateApp.h"
#include "SearchProgress.h"
#include "getFileList.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace brisko {

/// One search for the duplicates below one folder: lists the candidates, compares the bundles, then
/// groups the files. Runs on the thread that calls `searchDuplicateFileAtPath`; progress, the path
/// at work and the stop request may be used from any thread meanwhile. Results are asked for
/// afterwards.
class duplicateFind {
 public:
  /// Whether hidden files and the system's folders are searched; both until this is called.
  void setSearchOption(bool hidden, bool system);

  /// Runs the whole search for files larger than `limittedSize` bytes. Does nothing when `path` is
  /// not an existing folder. Logs "findDuplicate result:…", 0 when the folder could not be listed
  /// or held no candidate.
  void searchDuplicateFileAtPath(const std::string& path, std::uint64_t limittedSize);

  /// 0 to 100. Falls while bundles are compared and rises again when that has ended.
  std::uint32_t getProgress() const;
  std::string getCurrentSearchPath() const;
  /// What was found until then stays.
  void stopSearch();

  /// Appends the duplicate files: the members of one group stand next to each other, the later ones
  /// in the order of the walk, then the first.
  void getAllDuplicateFile(std::vector<fileAttrbItem>& out) const;
  /// The same from the given one on; false when there are fewer.
  bool findNewDuplicateFile(std::vector<fileAttrbItem>& out, std::size_t fromIndex) const;
  std::size_t duplicateFileCount() const { return m_newFileArray.size(); }
  /// Moves the first of them out; false when none is left. Memory shrinks on the way, so that a
  /// result can be turned into another form without both being there.
  bool takeDuplicateFile(Candidate& file);
  /// Hands over what the paths of the duplicate files are made of, when all have been taken.
  std::vector<CandidateArena> takePaths() { return std::move(store_.arenas); }

  const std::vector<AppGroup>& appDuplicateDirs() const { return m_allAppArray; }
  /// Appends the bundle groups.
  void getAllAppDuplicateDir(std::vector<AppGroup>& out) const { getNewAppDuplicateDir(out, 0); }
  /// Appends the bundle groups from the given one on; false when there are fewer.
  bool getNewAppDuplicateDir(std::vector<AppGroup>& out, std::size_t fromIndex) const;

  /// Compares the bundles at `paths`, whose groups are then among the results. A step of a search,
  /// which does it between listing and grouping.
  void getDuplicateApp(const std::vector<std::string>& paths);

  /// Folders that could not be read. To be asked after the search.
  const std::vector<SkippedFolder>& skipped() const { return skipped_; }

 private:
  bool findDuplicate();
  bool listCandidates();
  template <typename T>
  void setRunning(std::shared_ptr<T>& member, std::shared_ptr<T> value);

  std::string m_path;
  std::uint64_t m_limittedSize = 0;
  bool m_bSearchHiddenFile = true;
  bool m_bSearchSystemDirectory = true;
  std::atomic<bool> m_Stop = false;

  mutable std::mutex mutex_;  ///< guards which part of the search is running
  std::shared_ptr<getFileList> m_fileList;
  std::shared_ptr<FindDuplicateApp> m_findDuplicateApp;

  CandidateStore store_;
  std::vector<std::string> DirectoryArray;
  std::deque<Candidate> m_newFileArray;
  std::vector<AppGroup> m_allAppArray;
  std::vector<SkippedFolder> skipped_;
  std::uint64_t m_allFileCount = 0;
  SearchProgress m_iProgress;
  std::atomic<std::uint32_t> m_iAppProgress = 0;
  CurrentPath m_CurrentSearchPath;
};

}  // namespace brisko
