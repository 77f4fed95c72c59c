#pragma once

#include <optional>
#include <string>

namespace brisko {

// Runners of disk-tool commands. Each has one fixed file in the user's private temporary folder for
// what the tool prints: it deletes that file, runs "COMMAND > FILE" in the system shell, waits for
// its end and returns the file's path, whether or not the command succeeded. Nothing for null, and
// when there is no temporary folder. A text above 2047 bytes ends the process.
//
// One command at a time works on a file, in this process and in others of the same user.

std::optional<std::string> ZKExecCommand(const char* command);      ///< list, rename, eject
std::optional<std::string> LExecCommand(const char* command);       ///< details of one device
std::optional<std::string> eraserExecCommand(const char* command);  ///< formatting
std::optional<std::string> eraserDiskCommand(const char* command);  ///< from NTFS to FAT32
std::optional<std::string> aepairExecCommand(const char* command);  ///< repairs; not used yet

/// A command's end, beside the file that the runners above return.
struct DiskCommandEnd {
  std::optional<std::string> path;
  int status = -1;     ///< exit status; -1 when nothing was run
  std::string errors;  ///< what it said on standard error
};

/// The fixed files.
enum class DiskCommandFile {
  quarnel,
  mainDisk,
  eraserVolume,
  volumeTemp,
  repairTemp,
  zkapfs,
  azkapfs
};

/// Holds one of the fixed files for a command and the reading of its answer. The holder may run
/// commands on it; others wait.
class DiskCommandLock {
 public:
  explicit DiskCommandLock(DiskCommandFile file);
  ~DiskCommandLock();
  DiskCommandLock(const DiskCommandLock&) = delete;
  DiskCommandLock& operator=(const DiskCommandLock&) = delete;

 private:
  DiskCommandFile file_;
};

/// Where the file is; empty when there is no temporary folder.
std::string diskCommandFilePath(DiskCommandFile file);

/// What the runners do, with the command's end.
DiskCommandEnd runDiskCommand(const std::string& command, DiskCommandFile file);

}  // namespace brisko
