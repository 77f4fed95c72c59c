#pragma once

#include <string>

/// Additions to the platform's preferences: the applications that the login window starts, kept in
/// its domain "loginwindow" under "AutoLaunchedApplicationDictionary".
namespace brisko::NSUserDefaults {

/// Appends the application. False when an entry's path contains `path` already, or when it could
/// not be written.
bool addApplicationToLoginItems(const std::string& path);

/// Takes out every entry whose path contains `path`. False when there is none, or when it could not
/// be written.
bool removeApplicationFromLoginItems(const std::string& path);

}  // namespace brisko::NSUserDefaults
