#pragma once

#include "AMAppItem.h"

#include <string>

namespace brisko {

class UninstallModel;

/// Scans everything that is installed, with a progress line. False when the user interrupted it.
bool scanInstalled(UninstallModel& model);

/// The item that an argument of `command` means: the path of a bundle or of a listed application,
/// or the identifier of a listed one that no other has. Throws WrongUsage for anything else, and
/// for parts of the system.
AppItem installedItem(const UninstallModel& model, const std::string& argument,
                      const char* command);

}  // namespace brisko
