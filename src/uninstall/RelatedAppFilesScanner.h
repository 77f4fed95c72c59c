#pragma once

#include "AMAppItem.h"

#include <string>

namespace brisko {

/// When the sizes of what is found are computed. Whoever shows a list at once has them computed
/// later; the list is the same then.
enum class SizeTime { now, later };

/// Finds the files and folders that belong to an application, widget or plug-in in the library
/// locations, by their names. Without state; reads only; any thread, but not for the main thread
/// with `SizeTime::now`: whole trees are measured then.
class RelatedAppFilesScanner {
 public:
  /// The bundle itself, then every file and folder found, in the order of the locations. An entry
  /// that fits in two ways is listed twice. Only the bundle when it tells no name or no identifier.
  /// An empty path is logged as ".......".
  static AppItems relatedFilesToApplicationAtPath(const std::string& path,
                                                  SizeTime sizes = SizeTime::now);

  /// Describes what `path` names: name, icon, identifier, version, creation date. The flag is 1 for
  /// listed bundles and 0 for related files, which makes no difference. An Info.plist that is
  /// missing, broken, of another kind or larger than 4 MiB leaves identifier and version empty.
  static AppItem getAppItemWithFilePath(const std::string& path, int appFlag);
  /// The same, with the size "0KB".
  static AppItem constructItem(const std::string& path, int appFlag);
  /// The same, with its size.
  static AppItem aConstructItem(const std::string& path, int appFlag);
  /// The size of the whole tree as text. Nothing there: "0.00 KB", and a log line.
  static std::string getFileSizeItem(const std::string& path);
};

// Each appends to `items` what in its folders belongs to the application, the user's folder before
// the machine's, in each the matches of the name before those of the identifier.

void GetPreferencePaths(AppItems& items, const std::string& name, const std::string& identifier,
                        SizeTime sizes = SizeTime::now);
void GetCachePaths(AppItems& items, const std::string& name, const std::string& identifier,
                   SizeTime sizes = SizeTime::now);
void GetLogPaths(AppItems& items, const std::string& name, const std::string& identifier,
                 SizeTime sizes = SizeTime::now);
void GetSavedStatePaths(AppItems& items, const std::string& name, const std::string& identifier,
                        SizeTime sizes = SizeTime::now);
void GetAppSupportPaths(AppItems& items, const std::string& name, const std::string& identifier,
                        SizeTime sizes = SizeTime::now);
void GetDownloadPaths(AppItems& items, const std::string& name, const std::string& identifier,
                      SizeTime sizes = SizeTime::now);
/// Tickets of the notification system, by name only.
void GetGrowlPaths(AppItems& items, const std::string& name, SizeTime sizes = SizeTime::now);

/// Appends the direct entries of `folder` whose names begin with `key`, as it is or without its
/// blanks, in any case, in the file system's order. A key that is empty without blanks fits
/// nothing; a folder that is missing, cannot be read or is a link gives none.
void AddPathIfExists(AppItems& items, const std::string& folder, const std::string& key,
                     SizeTime sizes = SizeTime::now);

}  // namespace brisko
