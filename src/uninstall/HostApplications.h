#pragma once

#include "AMAppItem.h"

#include <string>

namespace brisko {

/// The host's applications that have a desktop entry, as items of the list. Blocks: for background
/// threads. Empty on hosts without any.
AppItems hostApplicationItems();

/// Whether the item is one that a package manager of the host removes.
bool isOfPackage(const AMAppItem& item);

/// What tells one package, or one program in files of its own, from all others of the host.
std::string packageKey(const InstalledApplication& application);
/// The same for another package of the same package manager.
std::string packageKey(const InstalledApplication& application, const std::string& packageName);

/// Whether two items are parts of one package, which can only go together.
bool isSamePackage(const AMAppItem& one, const AMAppItem& other);

}  // namespace brisko
