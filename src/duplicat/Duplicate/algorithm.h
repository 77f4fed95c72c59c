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

  /// Appends those of `array` that have the record's size, in their order. Always true.
  static bool findFileWithSize(const FileArray& array, FileArray& outArray,
                               const fileAttrbItem& findItem);
  /// Appends those of `array`, all of the record's size, that have both its digests, in their
  /// order. Digests that are missing are computed: the record's first, of the others the second
  /// only where the first is the same. False when the record cannot be read; others that cannot
  /// are passed over.
  bool findFileWithMd5(const FileArray& array, FileArray& outArray, fileAttrbItem& findItem);
  /// Appends the copies of `item` among `From`, in their order, and then `item` itself; nothing
  /// when it has none. False when nothing there has its size or it cannot be read.
  bool getDuplicateFile(const std::shared_ptr<fileAttrbItem>& item, const FileArray& From,
                        FileArray& Result);

  /// Whether two folders hold the same names below them, all the way down. False when one cannot be
  /// read whole.
  static bool CompareDirectoryWithoutHash(const std::string& path,
                                          const std::string& otherDirectory);
  /// Whether two regular files hold the same bytes at this moment. No link is followed.
  static bool compareWholeFile(const std::string& path, const std::string& anotherFile);
  /// Whether two folders hold files of the same bytes under the same names, all the way down. False
  /// also when anything but files and folders is in them.
  static bool CompareDirectory(const std::string& path, const std::string& otherDirectory);

 private:
  FileDescriptor open(const fileAttrbItem& item, std::string& linkText);

  std::vector<unsigned char> m_Buf;
};

}  // namespace brisko
