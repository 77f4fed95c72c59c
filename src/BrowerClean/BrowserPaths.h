#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace brisko {

/// From a table's path template to the paths that it stands for on this host.
namespace BrowserPaths {

/// The value of USER, as far as it can be a folder's name; else the account's name.
std::string userName();

/// The template of a bundle's kind: "%@" is the user's name, the path lies below the root.
std::string formatted(const std::string& pathTemplate);

/// What a template of a desktop browser stands for: ${…} and "%@" replaced, a name with "*" by
/// every real folder that matches, in name order. Folders on the way must be real ones, never
/// links. Only what exists is given; with `holds`, only folders with an entry of that name.
std::vector<std::string> resolved(const std::string& pathTemplate, const std::string& holds = "");

/// Names of the direct entries in name order; none for a missing path, "" and " ".
std::vector<std::string> getAllFileWithPath(const std::string& path);

/// The entries of `path` whose names contain `word`, as paths.
std::vector<std::string> entriesContaining(const std::string& path, const std::string& word);

/// `path` and, joined without a separator, the name of its last entry that ends in ".default"; ""
/// when there is none.
std::string getDefaultWithPath(const std::string& path);

/// Bytes of a file, or of all that is in a folder; a link's own.
std::uint64_t fileSizeWithPath(const std::string& path);

}  // namespace BrowserPaths
}  // namespace brisko
