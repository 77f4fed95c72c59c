#pragma once

#include "FileDescriptor.h"
#include "fileAttrbItem.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brisko {

/// Reads single files and computes the two digests of a record. One thread uses one `algorithm`.
///
/// Only regular files are opened, never through a link, and only while they are what the record was
/// listed as. The content of a link is the text of where it leads.
class algorithm {
 public:
  using FileArray = std::vector<std::shared_ptr<fileAttrbItem>>;

  algorithm();

  /// The length in bytes; 0, with the log line "open file failed:…", when it cannot be opened.
  std::uint64_t getFileSize(const std::string& path);

  /// Fills `md5_1k` from the first 1024 bytes of the buffer, after reading as many from the file: a
  /// shorter file is followed by what earlier reads left, and a file that cannot be read leaves the
  /// whole buffer as it was. Always true.
  bool getMD5_1K(fileAttrbItem& item);

  /// Fills `md5`. False, with the log line "open file failed:…", for a file that is empty, cannot
  /// be read whole, or is not the listed one any more; then `md5` stays. A set `stop` ends it as a
  /// failure, without a line.
  bool getMD5(fileAttrbItem& item, const std::atomic<bool>* stop = nullptr);

  /// True at once when `md5` is set, else `getMD5`.
  bool getSingleMd5WithData(fileAttrbItem& item) { return item.md5 != 0 || getMD5(item); }

  /// Whether two folders hold the same names below them, all the way down.
  static bool CompareDirectoryWithoutHash(const std::string& path,
                                          const std::string& otherDirectory);

 private:
  FileDescriptor open(const fileAttrbItem& item, std::string& linkText);

  std::vector<unsigned char> m_Buf;
};

}  // namespace brisko
