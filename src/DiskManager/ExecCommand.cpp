#include "ExecCommand.h"

#include "DiskCommandText.h"
#include "FileDescriptor.h"
#include "Host.h"
#include "HostTools.h"
#include "SystemLog.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr std::array<const char*, 7> kNames = {
    "quarnel.plist",          "MainDisk.plist",         "briskoVeraserVolume.plist",
    "briskoVolumeTemp.plist", "briskoRepairTemp.plist", "zkapfs.plist",
    "azkapfs.plist"};

constexpr std::size_t kErrorLimit = 4096;

/// What holds a file: within this process a mutex, between processes a lock file beside it.
struct Holder {
  std::recursive_mutex mutex;
  int depth = 0;
  FileDescriptor lockFile;
};

Holder& holderOf(DiskCommandFile file) {
  static auto* holders = new std::array<Holder, kNames.size()>;
  return (*holders)[static_cast<std::size_t>(file)];
}

void waitForOtherProcesses(Holder& holder, const std::string& path) {
  if (path.empty()) return;
  holder.lockFile = FileDescriptor(
      ::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!holder.lockFile) return;
  while (::flock(holder.lockFile.get(), LOCK_EX) != 0 && errno == EINTR) {
  }
}

std::optional<std::string> pathAfter(const char* command, DiskCommandFile file) {
  if (command == nullptr) return std::nullopt;
  return runDiskCommand(command, file).path;
}

}  // namespace

DiskCommandLock::DiskCommandLock(DiskCommandFile file) : file_(file) {
  Holder& holder = holderOf(file);
  holder.mutex.lock();
  if (holder.depth++ == 0) waitForOtherProcesses(holder, diskCommandFilePath(file));
}

DiskCommandLock::~DiskCommandLock() {
  Holder& holder = holderOf(file_);
  if (--holder.depth == 0) holder.lockFile.reset();
  holder.mutex.unlock();
}

std::string diskCommandFilePath(DiskCommandFile file) {
  const std::string folder = Host::current().folders->temporary();
  return folder.empty() ? "" : folder + "/" + kNames[static_cast<std::size_t>(file)];
}

DiskCommandEnd runDiskCommand(const std::string& command, DiskCommandFile file) {
  DiskCommandEnd end;
  const std::string path = diskCommandFilePath(file);
  if (path.empty()) {
    SystemLog::line("No temporary folder of your own could be made");
    return end;
  }
  const bool redirectsItself = file == DiskCommandFile::zkapfs || file == DiskCommandFile::azkapfs;
  const std::string text = redirectsItself ? command : DiskCommandText::run(command, path);
  if (!DiskCommandText::fits(text, DiskCommandText::kRunRoom)) {
    DiskCommandText::tooLong(text, DiskCommandText::kRunRoom);
  }
  const DiskCommandLock lock(file);
  if (::unlink(path.c_str()) != 0 && errno != ENOENT) {
    SystemLog::line("{}: {}", path, std::strerror(errno));
  }
  // The shell by its path: what is on the search path does not matter for it.
  auto outcome = HostTools::run({"/bin/sh", "-c", text}, kErrorLimit);
  end.path = path;
  end.status = outcome.status;
  end.errors = std::move(outcome.errors);
  if (end.status != 0) {
    SystemLog::line("{}: ended with {}: {}", command, end.status, end.errors);
  }
  return end;
}

std::optional<std::string> ZKExecCommand(const char* command) {
  return pathAfter(command, DiskCommandFile::quarnel);
}

std::optional<std::string> LExecCommand(const char* command) {
  return pathAfter(command, DiskCommandFile::mainDisk);
}

std::optional<std::string> eraserExecCommand(const char* command) {
  return pathAfter(command, DiskCommandFile::volumeTemp);
}

std::optional<std::string> eraserDiskCommand(const char* command) {
  return pathAfter(command, DiskCommandFile::eraserVolume);
}

std::optional<std::string> aepairExecCommand(const char* command) {
  return pathAfter(command, DiskCommandFile::repairTemp);
}

}  // namespace brisko
