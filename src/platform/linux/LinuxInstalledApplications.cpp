#include "LinuxInstalledApplications.h"

#include "ApplicationListing.h"
#include "AptTool.h"
#include "DesktopEntries.h"
#include "Host.h"
#include "HostTools.h"
#include "SnapApplications.h"
#include "SystemLog.h"
#include "UserPrograms.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <unistd.h>

namespace brisko {
namespace {

using Kind = InstalledApplication::Kind;

constexpr const char* kAdministrator = "system.privilege.admin";
constexpr const char* kChanged = "Something else would be removed now than what was shown.";

// The last line that a tool wrote to say why it failed.
std::string reasonOf(const std::string& tool, const HostTools::Outcome& outcome) {
  if (outcome.status < 0 || outcome.status == 127) return tool + " could not be started.";
  std::string text = outcome.errors.empty() ? outcome.output : outcome.errors;
  while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
    text.pop_back();
  const std::size_t line = text.rfind('\n');
  if (line != std::string::npos) text.erase(0, line + 1);
  return text.empty() ? tool + " ended with status " + std::to_string(outcome.status) + "." : text;
}

std::string runRemoval(const std::vector<std::string>& command,
                       const std::function<void(double)>& progress) {
  const HostTools::Outcome outcome = HostTools::run(command);
  if (outcome.status != 0) {
    std::string why = reasonOf(command.front(), outcome);
    SystemLog::line("{} {} ended with status {}: {}", command[0], command[1], outcome.status, why);
    return why;
  }
  if (progress) progress(1);
  return "";
}

}  // namespace

std::vector<FlatpakInstallation> LinuxInstalledApplications::flatpaks() const {
  return {FlatpakInstallation(folders_.variable("XDG_DATA_HOME").value_or("") + "/flatpak", true),
          FlatpakInstallation(folders_.path("/var/lib/flatpak"), false)};
}

std::vector<InstalledApplication> LinuxInstalledApplications::list() {
  const char* desktops = folders_.hasRoot() ? nullptr : std::getenv("XDG_CURRENT_DESKTOP");
  std::vector<DesktopEntry> entries =
      readDesktopEntries(applicationFolders(folders_), messageLocale());
  std::erase_if(entries, [&](const DesktopEntry& entry) {
    return !isShownIn(entry, desktops != nullptr ? desktops : "") || !hasTryExec(entry, folders_);
  });
  return listedApplications(std::move(entries), folders_, flatpaks());
}

UninstallPlan LinuxInstalledApplications::plan(const InstalledApplication& application) {
  UninstallPlan plan;
  if (application.kind == Kind::files) {
    plan.removes = application.files;
    plan.bytes = application.bytes;
    return plan;
  }
  if (folders_.hasRoot()) {
    plan.removes = {application.packageName};
    plan.refusal = "Packages can only be removed from the running system.";
    return plan;
  }
  switch (application.kind) {
    case Kind::package:
      return AptTool::plan(application.packageName);
    case Kind::flatpak:
      return flatpakPlan(application);
    default:
      return snapPlan(folders_.root(), application.packageName);
  }
}

UninstallPlan LinuxInstalledApplications::flatpakPlan(
    const InstalledApplication& application) const {
  const std::vector<FlatpakInstallation> installations = flatpaks();
  std::vector<FlatpakDeployment> all;
  for (const FlatpakInstallation& installation : installations) {
    for (FlatpakDeployment& deployment : installation.deployments()) {
      all.push_back(std::move(deployment));
    }
  }
  return installations[application.isForUser ? 0 : 1].plan(application.packageName, all);
}

std::string LinuxInstalledApplications::remove(const InstalledApplication& application,
                                               const UninstallPlan& shown,
                                               const std::function<void(double)>& progress) {
  if (application.kind == Kind::files) return "It belongs to no package manager.";
  const std::lock_guard lock(removal_);
  if (!shown.mayGo()) return shown.refusal;
  const std::string& name = application.packageName;
  if (shown.removes != std::vector<std::string>{name}) return kChanged;
  // As root the package manager's tool makes the plan anew by itself, under its lock.
  const bool isPlannedLater = application.kind == Kind::package && ::geteuid() == 0;
  const UninstallPlan now = isPlannedLater ? shown : plan(application);
  if (!now.mayGo()) return now.refusal;
  if (!now.isSameAs(shown)) return kChanged;
  if (application.kind == Kind::package) {
    std::vector<std::string> packages = now.removes;
    packages.insert(packages.end(), now.alsoRemoves.begin(), now.alsoRemoves.end());
    return removePackages(packages, progress);
  }
  std::vector<std::string> command = {"snap", "remove", name};
  if (application.kind == Kind::flatpak) {
    command = {"flatpak", "uninstall",        application.isForUser ? "--user" : "--system",
               "-y",      "--noninteractive", name};
  }
  std::string why = runRemoval(command, progress);
  if (why.empty() && plan(application).mayGo()) why = "It is still installed.";
  return why;
}

std::string LinuxInstalledApplications::removePackages(
    const std::vector<std::string>& packages, const std::function<void(double)>& progress) {
  if (::geteuid() == 0) return AptTool::remove(packages, progress);
  Authorization& authorization = *Host::current().authorization;
  const int right = obtainRight(authorization);
  if (right == Authorization::kCancelled) return "The administrator's right was not given.";
  if (right != 0) {
    SystemLog::line("No right to remove {}: {}", packages.front(), right);
    return "The administrator's right could not be obtained.";
  }
  Authorization::Result result;
  const int status = authorization.removePackages(right_, packages, progress, result);
  if (status == 0) return "";
  if (!result.output.empty()) return result.output;
  return "The removal helper ended before it was done.";
}

int LinuxInstalledApplications::obtainRight(Authorization& authorization) {
  constexpr unsigned kFlags =
      Authorization::interactionAllowed | Authorization::extendRights | Authorization::preAuthorize;
  const int held = right_ == 0 ? Authorization::kInvalid
                               : authorization.copyRights(right_, kAdministrator, kFlags);
  if (held != Authorization::kInvalid) return held;
  const int made = authorization.create(right_);
  return made != 0 ? made : authorization.copyRights(right_, kAdministrator, kFlags);
}

}  // namespace brisko
