#include "DiskAndVolumeInfo.h"

#include "DiskCommandText.h"
#include "Host.h"
#include "SystemLog.h"
#include "TCDiskVolums.h"

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <sstream>
#include <utility>

namespace brisko {
namespace {

std::mutex complaintMutex;
std::vector<std::string> complaints;

void takeDown(const std::string& errors) {
  const std::lock_guard lock(complaintMutex);
  std::istringstream lines(errors);
  for (std::string line; std::getline(lines, line);) {
    const bool isNew = std::find(complaints.begin(), complaints.end(), line) == complaints.end();
    if (isNew && !line.empty() && complaints.size() < 16) complaints.push_back(line);
  }
}

PropertyList answerTo(const std::string& command, DiskCommandFile file) {
  const DiskCommandLock lock(file);
  const DiskCommandEnd end = runDiskCommand(command, file);
  takeDown(end.errors);
  return end.path ? PropertyList::read(*end.path) : PropertyList();
}

bool operate(const std::string& command, std::size_t room, DiskCommandEnd* end) {
  if (!DiskCommandText::fits(command, room)) DiskCommandText::tooLong(command, room);
  DiskCommandEnd ended = runDiskCommand(command, DiskCommandFile::quarnel);
  const bool wasRun = ended.path.has_value();
  if (!wasRun) SystemLog::line("Error");
  if (end != nullptr) *end = std::move(ended);
  return wasRun;
}

}  // namespace

PropertyList DiskAndVolumeInfo::getAllDiskAndVolumes() {
  return answerTo(DiskCommandText::list(), DiskCommandFile::quarnel);
}

PropertyList DiskAndVolumeInfo::ZKGetDiskInfo(const char* device) {
  if (device == nullptr) return {};
  const std::string command = DiskCommandText::info(device);
  if (!DiskCommandText::fits(command, DiskCommandText::kInfoRoom)) {
    // The name came from a listing, not from a person: one bad row must not end the program.
    SystemLog::line("Too long for a device: {}", device);
    return {};
  }
  return answerTo(command, DiskCommandFile::mainDisk);
}

PropertyList DiskAndVolumeInfo::GetMainDiskInfo(const char* device) {
  if (device == nullptr) return {};
  const std::string command = DiskCommandText::infoUnquoted(device);
  if (!DiskCommandText::fits(command, DiskCommandText::kInfoRoom)) {
    DiskCommandText::tooLong(command, DiskCommandText::kInfoRoom);
  }
  return answerTo(command, DiskCommandFile::mainDisk);
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

std::string DiskAndVolumeInfo::takeComplaints() {
  const std::lock_guard lock(complaintMutex);
  std::string text;
  for (const std::string& line : std::exchange(complaints, {}))
    text += (text.empty() ? "" : "\n") + line;
  return text;
}

}  // namespace brisko
