#pragma once

#include "FSRef.h"

#include <string>
#include <vector>

namespace brisko {

/// A login item as the registry tells it.
struct LoginItemRecord {
  std::string URL;  ///< "file://" and the path, percent-encoded
  bool Hidden = false;
};

// Login items under the names and statuses of the interface that answers for them by events; here
// over the host's store, which answers at once. 0 is success.

/// Fills `items` with all of them, or with none when it fails.
int LIAECopyLoginItems(std::vector<LoginItemRecord>& items);
/// -43 when the address names no file that is there.
int LIAEAddURLAtEnd(const std::string& url, bool hidden);
/// -43 when the reference leads to nothing, or to another item that took the place.
int LIAEAddRefAtEnd(const FSRef& item, bool hidden);
/// `index` from 0; -50 for one that does not exist.
int LIAERemove(std::size_t index);

}  // namespace brisko
