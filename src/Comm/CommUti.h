#pragma once

#include "AttributedText.h"
#include "FSRef.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// Stateless helpers that every module shares. All are reentrant; none raises an error.
class CommUti {
 public:
  // Byte counts as text. Units are decimal: 1 KB is 1000 bytes.

  /// "%.0f byte" up to 999, then "%0.2f" of KB, MB, GB and from 1e12 on TB. The quotient is
  /// narrowed to single precision before it is printed.
  static std::string longlongDiskSize(std::uint64_t bytes);
  /// The same text as `longlongDiskSize`.
  static std::string longlongConvertVolSpace(std::uint64_t bytes);
  /// "%0.2f" of KB, MB or GB (no smaller and no larger unit), computed in single precision.
  static std::string convertVolSpace(std::uint64_t bytes);
  /// Bytes from a text of the above forms that ends in KB, MB, GB or TB, computed in single
  /// precision; 0 for anything else, a count of bytes included. A negative number gives its wrapped
  /// 64 bits.
  static std::uint64_t volSpaceFromString(std::string_view text);

  /// Sum of the data-fork logical sizes below a folder, or of the item itself; 0 on any error.
  /// Links are not followed and mounts not crossed. Blocks: not for the main thread. `cancel` ends
  /// it early, with what was counted until then.
  static std::uint64_t sizeOfFileRef(const FSRef& reference,
                                     const std::atomic<bool>* cancel = nullptr);

  // Search locations, in the order in which they are searched.

  static std::vector<std::string> applicationPaths();
  static std::vector<std::string> widgetPaths();
  static std::vector<std::string> preferencePanePaths();
  static std::vector<std::string> pluginPaths();

  /// Appends the scan locations of a junk category (0 to 5) to `array`.
  static void folderPath(int category, std::vector<std::string>& array);
  static void trashPaths(std::vector<std::string>& array);
  static void getXcodePaths(std::vector<std::string>& array);

  // The system and the process.

  /// Each out-parameter may be null. On failure "Unable to obtain system version: %ld" is logged
  /// and the version is 10.0.0.
  static void getSystemVersionMajor(std::uint32_t* major, std::uint32_t* minor,
                                    std::uint32_t* bugFix);
  /// major × 100 + minor: 10.9 gives 1009, 11.2 gives 1102.
  static int getSystemVersion();
  static int getMinorVersion();
  /// The environment's USER; empty when it is not set.
  static std::string userName();
  /// The application bundle's path; on hosts without bundles the program's own file.
  static std::string getLocalPath();
  /// Whether the network can be used: asks for the page under the link key "HomeURL", past every
  /// cache, for at most 5.0 seconds. True when any data came back. Blocks: not for the main thread.
  /// `stop`, asked several times a second, ends it early with false.
  static bool isCanBeUseNetWork(const std::function<bool()>& stop = nullptr);
  /// Whether a running application has exactly this bundle identifier.
  static bool isBelongRunningApp(std::string_view bundleIdentifier);

  /// The whole of `main` in `mainColour` at 14 points, the first occurrence of `change` in
  /// `changeColour` at 18 points, centred. When there is none, "Failed _2" is logged and `main`
  /// alone comes back.
  static AttributedText setStringFontWithMainStr(const std::string& main,
                                                 const std::string& mainColour,
                                                 const std::string& change,
                                                 const std::string& changeColour);
};

}  // namespace brisko
