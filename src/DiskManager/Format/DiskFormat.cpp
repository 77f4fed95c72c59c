#include "DiskFormat.h"

#include "DiskCommandText.h"
#include "DiskOffers.h"
#include "DiskState.h"
#include "HostTools.h"
#include "SystemLog.h"
#include "VolumeName.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace brisko {
namespace {

constexpr const char* kDefaultName = "NEW";
constexpr const char* kDiskTool = "/usr/sbin/diskutil";

bool containsIgnoringCase(std::string text, std::string_view part) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text.find(part) != std::string::npos;
}

bool isNtfs(const std::string& type) {
  return containsIgnoringCase(type, "ntfs");
}

bool isApfs(const std::string& type) {
  return containsIgnoringCase(type, "apfs");
}

}  // namespace

namespace DiskFormat {

FormatQuestion question(const std::string& volumeName, const std::string& currentType) {
  FormatQuestion question;
  question.title = "Format '" + volumeName + "'?";
  question.text =
      "All data on '" + volumeName + "' will be deleted after format, do you want to format it?";
  question.name = volumeName;
  question.type = isNtfs(currentType) ? kTypes[1] : currentType;
  question.typeIsFixed = isNtfs(currentType) || isApfs(currentType);
  return question;
}

FormatPlan plan(const DiskAndVolumeObj& volume, const std::string& name, const std::string& type) {
  FormatPlan plan;
  plan.device = volume.volRootDir;
  if (isNtfs(volume.diskType)) {
    plan.way = FormatPlan::Way::fromNtfs;
    plan.type = kTypes[1];
    plan.name = kDefaultName;
    plan.command = DiskCommandText::eraseVolume(plan.type, plan.name, plan.device,
                                                DiskCommandText::Name::bare);
  } else if (isApfs(volume.diskType)) {
    plan.way = FormatPlan::Way::reformat;
    plan.type = volume.diskType;
    plan.name = volume.volumeName;
    plan.device = volume.volumePath;
    plan.command = std::string(kDiskTool) + " reformat " + volume.volumePath;
  } else {
    plan.type = type;
    plan.name = VolumeName::forType(VolumeName::isGiven(name) ? name : kDefaultName, type);
    plan.command = DiskCommandText::eraseVolume(plan.type, plan.name, plan.device);
  }
  return plan;
}

std::string refusal(const FormatPlan& plan) {
  if (plan.way == FormatPlan::Way::reformat) return "";
  if (DiskCommandText::fits(plan.command, DiskCommandText::kEraseRoom)) return "";
  return nameTooLong(VolumeName::characterCount(plan.name),
                     DiskCommandText::fittingForErase(plan.type, plan.name, plan.device));
}

std::string changedSince(const DiskAndVolumeObj& volume) {
  const DiskState now = DiskState::of(volume.volRootDir);
  if (now.isThere && now.uuid == volume.diskUUID && now.name == volume.volumeName) return "";
  return "It is not the volume any more that was shown.";
}

DiskCommandEnd run(const FormatPlan& plan) {
  DiskCommandEnd end;
  if (plan.way == FormatPlan::Way::reformat) {
    auto outcome = HostTools::run({HostTools::path(kDiskTool), "reformat", plan.device});
    end.status = outcome.status;
    end.errors = std::move(outcome.errors);
    if (end.status != 0) SystemLog::line("{}: {}", plan.command, end.errors);
    return end;
  }
  if (!DiskCommandText::fits(plan.command, DiskCommandText::kEraseRoom)) {
    DiskCommandText::tooLong(plan.command, DiskCommandText::kEraseRoom);
  }
  end = runDiskCommand(plan.command, plan.way == FormatPlan::Way::fromNtfs
                                         ? DiskCommandFile::eraserVolume
                                         : DiskCommandFile::volumeTemp);
  SystemLog::line(" rename : {} ", end.path.value_or("(null)"));
  if (end.path) SystemLog::line("format volume : {}", *end.path);
  return end;
}

}  // namespace DiskFormat
}  // namespace brisko
