#pragma once

#include "FSRef.h"

#include <string>

/// Additions to the platform's string.
namespace brisko::NSString {

/// The reference for the path, as `NSFileManager::convertStringToFSRef`.
FSRef fsref(const std::string& path);

}  // namespace brisko::NSString
