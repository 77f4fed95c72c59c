#pragma once

#include "BrowerObj.h"

#include <string>
#include <vector>

namespace brisko {

/// How a kind of data of each family is read and cleaned. Any thread; all of it blocks.
namespace BrowserKinds {

/// The image of a kind.
std::string getIconWithKey(const std::string& kind);

/// Sets the kind's `size`, `bytes`, `count`, `targets` and `reasons` to what is there now. Chosen
/// by the browser's family.
void readSize(BrowerObj& kind);
void getGoogleFileSizeWithBrower(BrowerObj& kind);
void getFirefoxSizeWithBrower(BrowerObj& kind);
void getOpearSizeWithBrower(BrowerObj& kind);
void getSafariSizeWithBrower(BrowerObj& kind);

/// What became of a kind.
struct Cleaning {
  std::vector<std::string> reasons;  ///< why something of it stayed; none when all went
  std::string size;                  ///< what the right column shows when all went
  std::uint64_t freedBytes = 0;      ///< what the file system gave back for removed files
};

/// Erases what was shown of the kind.
Cleaning clean(const BrowerObj& kind);

/// Removes what `target` shows, clearing its immutable attribute first, as the user and through the
/// removal engine. Why it stayed; empty when nothing is there any more. Adds to `freedBytes`.
std::string deleteFileWithPath(const BrowserTarget& target, std::uint64_t& freedBytes);

/// What is lost for good with the kind, for people; empty for what the browser makes anew.
std::string lossText(const BrowerObj& kind);

}  // namespace BrowserKinds
}  // namespace brisko
