#include "DiskAndVolumeInfo.h"

#include "DiskCommandText.h"
#include "Host.h"
#include "SystemLog.h"
#include "TCDiskVolums.h"

#include <cerrno>
#include <utility>

namespace brisko {
namespace {

PropertyList answerTo(const std::string& command, DiskCommandFile file, DiskCommandEnd* end) {
  const DiskCommandLock lock(file);
  DiskCommandEnd ended = runDiskCommand(command, file);
  PropertyList answer = ended.path ? PropertyList::read(*ended.path) : PropertyList();
  if (end != nullptr) *end = std::move(ended);
  return answer;
}

void endUnlessItFits(const std::string& command, std::size_t room) {
  if (!DiskCommandText::fits(command, room)) DiskCommandText::tooLong(command, room);
}

bool operate(const std::string& command, std::size_t room, DiskCommandEnd* end) {
  endUnlessItFits(command, room);
  DiskCommandEnd ended = runDiskCommand(command, DiskCommandFile::quarnel);
  const bool wasRun = ended.path.has_value();
  if (!wasRun) SystemLog::line("Error");
  if (end != nullptr) *end = std::move(ended);
  return wasRun;
}

PropertyList informationBy(const std::string& command, DiskCommandEnd* end) {
  endUnlessItFits(command, DiskCommandText::kInfoRoom);
  return answerTo(command, DiskCommandFile::mainDisk, end);
}

}  // namespace

PropertyList DiskAndVolumeInfo::getAllDiskAndVolumes(DiskCommandEnd* end) {
  return answerTo(DiskCommandText::list(), DiskCommandFile::quarnel, end);
}

PropertyList DiskAndVolumeInfo::ZKGetDiskInfo(const char* device, DiskCommandEnd* end) {
  return device == nullptr ? PropertyList() : informationBy(DiskCommandText::info(device), end);
}

PropertyList DiskAndVolumeInfo::GetMainDiskInfo(const char* device) {
  return device == nullptr ? PropertyList()
                           : informationBy(DiskCommandText::infoUnquoted(device), nullptr);
}

PropertyList DiskAndVolumeInfo::detailsOf(const std::string& device, DiskCommandEnd* end) {
  if (!DiskCommandText::fits(DiskCommandText::info(device), DiskCommandText::kInfoRoom)) {
    SystemLog::line("Too long for a device: {}", device);
    return {};
  }
  return ZKGetDiskInfo(device.c_str(), end);
}

bool DiskAndVolumeInfo::renameDiskWithGuid(const std::string& uuid, const std::string& newName,
                                           DiskCommandEnd* end) {
  if (newName.empty()) return false;
  return operate(DiskCommandText::rename(uuid, newName), DiskCommandText::kRenameRoom, end);
}

bool DiskAndVolumeInfo::ejcDiskWithGuid(const std::string& identifier, DiskCommandEnd* end) {
  if (identifier.empty()) return false;
  return operate(DiskCommandText::eject(identifier), DiskCommandText::kEjectRoom, end);
}

bool DiskAndVolumeInfo::ejcDiskWithGuidNum(std::int16_t volRefNumber) {
  TCDiskVolums enumerator;
  for (const TCVolumDetail& volume : enumerator.allDiskVolums()) {
    if (volume.volRefNumber != volRefNumber) continue;
    for (const MountedVolume& mounted : Host::current().workspace->mountedVolumes()) {
      if (mounted.root != volume.volRootDir || !mounted.device.starts_with("/dev/")) continue;
      const std::string command = DiskCommandText::eject(mounted.device.substr(5));
      if (!DiskCommandText::fits(command, DiskCommandText::kEjectRoom)) return false;
      return runDiskCommand(command, DiskCommandFile::quarnel).status == 0;
    }
  }
  return false;
}

std::int16_t DiskAndVolumeInfo::getVolumeRefNumWith(const std::string& path) {
  TCDiskVolums enumerator;
  const TCVolumDetail* holder = nullptr;
  for (const TCVolumDetail& volume : enumerator.allDiskVolums()) {
    const std::string& root = volume.volRootDir;
    const bool holds =
        root == "/" ? path.starts_with('/') : path == root || path.starts_with(root + "/");
    if (holds && (holder == nullptr || root.size() > holder->volRootDir.size())) holder = &volume;
  }
  if (holder == nullptr) {
    SystemLog::line("An error occurred: {}", ENOENT);
    return 0;
  }
  SystemLog::line("The server location is: {}", "file://" + holder->volRootDir);
  return holder->volRefNumber;
}

}  // namespace brisko
