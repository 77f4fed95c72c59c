#pragma once

#include "Inventory.h"

#include <string>

namespace brisko::diskutil {

/// The lists for people: aligned text with a line break at each end of line, with everything that
/// comes from a device escaped.
std::string shownListing(const Inventory& inventory);
std::string shownInformation(const Inventory& inventory, const Device& device);

}  // namespace brisko::diskutil
