#pragma once

#include "FileIdentity.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// One entry of a folder. `name` points into the batch it was read with.
struct CatalogItem {
  /// Bytes as the file system gives them, never "." or ".."; a zero byte follows them.
  std::string_view name;
  FileKind kind = FileKind::unknown;
  std::uint64_t inode = 0;

  // Filled by Folder::information; zero before.
  std::uint64_t dataSize = 0;  ///< logical size of the data fork, bytes; regular files and links
  std::uint64_t resourceSize = 0;   ///< logical size of the resource fork, bytes; 0 without forks
  std::uint64_t allocatedSize = 0;  ///< bytes the file system holds for it
  std::uint64_t device = 0;
  std::uint32_t links = 0;
  bool isMountPoint = false;  ///< another file system is mounted on it
  bool hasInformation = false;
  std::int64_t modificationSeconds = 0;  ///< since 1970, UTC
  std::int64_t modificationNanoseconds = 0;
  std::int64_t creationSeconds = 0;  ///< since 1970, UTC; 0 where the file system keeps none
};

/// Names and facts of one batch; reused from read to read so that a walk allocates nothing per
/// file.
struct CatalogBatch {
  std::vector<CatalogItem> items;
  std::vector<char> names;  ///< what the items' names point into
};

/// Bulk reading of folders: names, kinds, sizes and times in batches, without building a path per
/// file and without following links.
class Catalog {
 public:
  /// An open folder. One thread reads it; `information` and `open` may be called by several at
  /// once.
  class Folder {
   public:
    virtual ~Folder() = default;

    /// Replaces `batch` by the next entries in the file system's own order, at most `maximum` of
    /// them (0: as many as one system call gives). False at the end and at the first error.
    virtual bool read(CatalogBatch& batch, std::size_t maximum) = 0;

    /// Fills in the facts of `items`, which were read from this folder. An entry that is gone or
    /// cannot be looked at keeps `hasInformation` false.
    virtual void information(std::span<CatalogItem> items) = 0;

    /// Opens the folder of this name in this folder: never through a link and never across a mount.
    /// Null on failure, with errno's value in `error`.
    virtual std::unique_ptr<Folder> open(std::string_view name, int& error) = 0;

    /// Opens the folder that holds this one, if that still is the given one: a folder that was
    /// moved meanwhile does not lead a walk elsewhere. Null on failure, with errno's value in
    /// `error`.
    virtual std::unique_ptr<Folder> openParent(std::uint64_t device, std::uint64_t inode,
                                               int& error) = 0;

    /// errno's value that ended `read`; 0 at the end of the folder.
    virtual int error() const = 0;

    /// The folder itself.
    virtual CatalogItem self() const = 0;
  };

  virtual ~Catalog() = default;

  /// Opens the folder at `path`, of any length; a path that is itself a link is not followed, links
  /// before its last component are. Null on failure, with
  /// errno's value in `error` (ENOTDIR for anything but a folder, a link included).
  virtual std::unique_ptr<Folder> open(const std::string& path, int& error) = 0;

  /// The facts of what `path` names, a link being itself. `name` is left empty. Nothing when it
  /// cannot be looked at: `hasInformation` is false.
  virtual CatalogItem information(const std::string& path) = 0;
};

}  // namespace brisko
