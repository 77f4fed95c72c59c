#pragma once

#include "CandidateStore.h"
#include "CurrentPath.h"
#include "fileAttrbItem.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// A folder that a search could not look into, and why.
struct SkippedFolder {
  std::string path;
  std::string reason;
};

/// Walks one folder and lists a search's candidates: every file below it that is larger than a
/// limit, and, apart from them, the application bundles (folders named *.app, in any case), whose
/// files are no candidates of their own.
///
/// The order is that of a depth-first walk which takes each folder's entries as the file system
/// lists them. Links directly in the folder are followed when they lead to a folder, and listed
/// with their own size when they lead to a file; links further down are left out. A file system
/// that holds no blocks (what the kernel makes up, such as process information) is not entered.
///
/// Several threads walk; one `getFileList` serves one search. Log lines: "get contents Of Directory
/// At Path failed…" for a folder that cannot be listed, "directory not exsts:…" for an entry of the
/// folder searched that is gone or dangles, and, only when asked for, "file:… filesize:…" for each
/// candidate.
class getFileList {
 public:
  bool m_bSearchHiddenFile = true;       ///< false leaves out what has a component with a dot first
  bool m_bSearchSystemDirectory = true;  ///< false leaves out the system's folders of "/"

  /// Appends the candidates and the bundles' paths. False when the folder cannot be listed; true
  /// also when the walk was stopped midway.
  bool getListAtPath(const std::string& path, std::vector<fileAttrbItem>& FileArray,
                     std::vector<std::string>& DirectoryArray, std::uint64_t LimittedSize);

  /// The same into the compact form that a search works on. `store` is replaced.
  bool getListAtPath(const std::string& path, CandidateStore& store,
                     std::vector<std::string>& DirectoryArray, std::uint64_t LimittedSize);

  /// The top level in one: appends the paths of everything below the folder, each folder behind its
  /// contents, from which candidates are chosen. Hidden and system folders of the top level are
  /// left out as wanted, links there followed. False, with a line, when the folder cannot be
  /// listed.
  bool getDirectoryAtPath(const std::string& path, std::vector<std::string>& resultArray);
  /// The same for what lies below `InPath`, with nothing left out and no link followed. A folder
  /// that cannot be listed is left out with its contents; false when that is `InPath` itself, or
  /// after a stop.
  bool getSubpathsOfDirectoryAtPath(std::vector<std::string>& resultArray,
                                    const std::string& InPath);
  /// Whether `path` is or lies in a bundle. The outermost one is appended when it is not in
  /// `outArray` yet and the item's own size is above `limitSize` bytes.
  static bool getAppDirectory(const std::string& path, std::vector<std::string>& outArray,
                              std::uint64_t limitSize);

  /// May be called from any thread, before the walk too. It ends before the next folder.
  void stopSearch() { m_bStopSearch = true; }

  /// The folder that was being listed a moment ago. From any thread.
  std::string m_CurrentPath() const { return currentPath_.get(); }

  /// Folders that were left out because they could not be read. To be asked after the walk.
  const std::vector<SkippedFolder>& skipped() const { return skipped_; }

  /// A component begins with a dot.
  static bool IsHiddenFile(std::string_view path);
  /// The first component below "/" is one of the system's folders, in any case.
  static bool IsSystemDirectory(std::string_view path);
  /// The path's extension is "app", in any case.
  static bool IsAppDirectory(std::string_view path);
  /// A component's name ends in ".app", in any case.
  static bool HasAppDirectory(std::string_view path);
  /// The outermost bundle that `path` is or lies in, as a prefix of it; empty when there is none.
  static std::string_view outermostBundle(std::string_view path);

  /// Whether each candidate is logged with its size: a line per file, for diagnosis only.
  static void setLogsCandidates(bool logs);

 private:
  friend class CandidateWalk;

  std::atomic<bool> m_bStopSearch = false;
  CurrentPath currentPath_;
  std::vector<SkippedFolder> skipped_;
};

}  // namespace brisko
