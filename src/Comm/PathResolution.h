#pragma once

#include "FileDescriptor.h"
#include "RemovalCalls.h"

#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// The folder that an item stands in, open, and the item's name in it.
struct ParentFolder {
  FileDescriptor folder;     ///< O_PATH; unset when `error` is set
  std::string path;          ///< where it really is, without a trailing slash; "" for the root
  std::string name;          ///< of the item; empty for the root itself
  int error = 0;             ///< errno's value
  std::string reason;        ///< with `error`: one line for people
  bool throughLink = false;  ///< the error is a link on the way that may not be followed

  std::string itemPath() const { return path + "/" + name; }
};

/// The names that make up an absolute path; "." and doubled slashes count for nothing. False for a
/// relative path, and for one with ".." or a NUL byte in it: where those lead cannot be said from
/// the text alone.
bool splitPath(std::string_view path, std::vector<std::string>& names);

/// "/" + the names joined; "" for none.
std::string joinPath(const std::vector<std::string>& names, std::size_t count);

/// Opens the folder that `path` lies in.
///
/// No link on the way is followed, with one exception: a link of the system such as "/var/run", or
/// a
/// "/home" or "/home/NAME" that was put on another disk. Root owns it, it lies in "/" or in a
/// folder of
/// "/", and only root can write there, so nobody but the administrator can have laid or can
/// redirect it. With `systemLinks` false these are refused as well.
ParentFolder openParent(const RemovalCalls& calls, const std::string& path,
                        bool systemLinks = true);

}  // namespace brisko
