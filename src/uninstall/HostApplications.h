#pragma once

#include "AMAppItem.h"

namespace brisko {

/// The host's applications that have a desktop entry, as items of the list. Blocks: for background
/// threads. Empty on hosts without any.
AppItems hostApplicationItems();

/// Whether two items are parts of one package, which can only go together.
bool isSamePackage(const AMAppItem& one, const AMAppItem& other);

}  // namespace brisko
