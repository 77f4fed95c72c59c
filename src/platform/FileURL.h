#pragma once

#include <string>

namespace brisko {

/// The "file" address of a path. All but letters, digits and "-._~/" is encoded byte by byte, so
/// the name needs to be in no particular character set and no character of it means anything to
/// others.
std::string fileURL(const std::string& path);

/// The path of a "file" address; empty for any other. What is no encoded byte stays as it is.
std::string pathOfFileURL(const std::string& url);

}  // namespace brisko
