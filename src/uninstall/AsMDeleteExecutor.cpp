#include "AsMDeleteExecutor.h"

#include "DeletablePermission.h"
#include "Dispatch.h"
#include "Host.h"
#include "HostApplications.h"
#include "InstalledApplications.h"
#include "PrivilegedRemoval.h"
#include "SystemLog.h"

#include <algorithm>
#include <utility>

namespace brisko {
namespace {

constexpr const char* kAdministrator = "system.privilege.admin";
constexpr unsigned kAsk =
    Authorization::interactionAllowed | Authorization::extendRights | Authorization::preAuthorize;
constexpr unsigned kAskAgain = Authorization::interactionAllowed | Authorization::extendRights;

Authorization& authorization() {
  return *Host::current().authorization;
}

RemovalReport failure(std::string reason, RemovalOutcome outcome = RemovalOutcome::failed) {
  RemovalReport report;
  report.outcome = outcome;
  report.reason = std::move(reason);
  return report;
}

// With an entry before it.
RemovalReport alreadyGone() {
  RemovalReport report;
  report.outcome = RemovalOutcome::removed;
  return report;
}

RemovalReport notShown() {
  return failure("It is not the item that was shown any more.", RemovalOutcome::changed);
}

// Whether the administrator's right may make a difference; for what is gone it is defined to.
bool isForAdministrator(const RemovalReport& report) {
  return report.outcome == RemovalOutcome::notPermitted ||
         report.outcome == RemovalOutcome::failed || report.outcome == RemovalOutcome::missing;
}

}  // namespace

std::shared_ptr<AsMDeleteExecutor> AsMDeleteExecutor::make(std::shared_ptr<Delegate> delegate) {
  return std::shared_ptr<AsMDeleteExecutor>(new AsMDeleteExecutor(std::move(delegate)));
}

AsMDeleteExecutor::~AsMDeleteExecutor() {
  freeAuthorization();
}

void AsMDeleteExecutor::executeDelete(AppItems items) {
  trashFiles_ = std::move(items);
  staying_.clear();
  gonePackages_.clear();
  goneFiles_.clear();
  stop_ = false;
  Dispatch::global([self = shared_from_this()] {
    for (const AppItem& item : self->trashFiles_) {
      if (self->stop_) break;
      self->removeTrahFile(item);
    }
    self->delegate_->deleteEnded();
  });
}

bool AsMDeleteExecutor::tell(const AppItem& item, const RemovalReport& report) {
  if (report.removed()) {
    delegate_->deleteRelatedFile(item, report);
  } else {
    delegate_->deleteRelatedFileFail(item, report);
  }
  return report.removed();
}

bool AsMDeleteExecutor::removeTrahFile(const AppItem& item) {
  if (item->owner && staying_.contains(item->owner.get())) {
    return tell(item, failure("The application stays, and so does what belongs to it."));
  }
  if (item->owner && goneFiles_.contains(item->path)) return tell(item, alreadyGone());
  const bool isPackage = item->role == AMAppItem::Role::package;
  const bool isRemoved = isPackage ? removePackage(item) : removeFile(item);
  if (!isRemoved && item->host) staying_.insert(item->host.get());
  if (isRemoved && item->owner) goneFiles_.insert(item->path);
  return isRemoved;
}

RemovalReport AsMDeleteExecutor::removedAs(const AMAppItem& item) const {
  // Permissions are given only to what may go at all.
  if (auto refusal = RemovalEngine().refusal(item.path)) {
    SystemLog::line("Remove failed: {}: {}", item.path, refusal->reason);
    return *std::move(refusal);
  }
  if (!item.identity) {
    return FileIdentity::at(item.path) ? notShown()
                                       : failure("It is not there.", RemovalOutcome::missing);
  }
  const DeletablePermission permission(item.path, item.identity);
  return RemovalEngine().remove(item.path, item.identity, &stop_);
}

bool AsMDeleteExecutor::removeFile(const AppItem& item) {
  const RemovalReport report = removedAs(*item);
  if (report.removed() || !isForAdministrator(report)) return tell(item, report);
  if (!allocAuthorization()) {
    SystemLog::line("Alloc authorization failed!!!");
    RemovalReport refused = failure("The administrator's right was not given.");
    refused.freedBytes = report.freedBytes;
    return tell(item, refused);
  }
  RemovalReport privileged = authDeleteAtPath(item->path, item->identity);
  privileged.freedBytes += report.freedBytes;
  const bool removed = tell(item, privileged);
  if (!removed) SystemLog::line("Clean file by authorization failed: {}", item->path);
  return removed;
}

// The package manager asks for the right by itself, and looks again at what it is about to do.
bool AsMDeleteExecutor::removePackage(const AppItem& item) {
  const InstalledApplication& host = *item->host;
  RemovalReport report = alreadyGone();
  if (gonePackages_.contains(packageKey(host))) return tell(item, report);
  UninstallPlan plan = *item->plan;
  report.freedBytes = item->bytes;
  // What went before is not in the plan any more, and was counted then.
  std::erase_if(plan.alsoRemoves, [&](const std::string& name) {
    const auto gone = gonePackages_.find(packageKey(host, name));
    if (gone == gonePackages_.end()) return false;
    report.freedBytes -= std::min(report.freedBytes, gone->second);
    return true;
  });
  const std::string reason = Host::current().installedApplications->remove(
      host, plan, [&](double part) { delegate_->packageProgressed(item, part); });
  if (!reason.empty()) {
    SystemLog::line("Remove failed: {}: {}", host.packageName, reason);
    return tell(item, failure(reason));
  }
  gonePackages_.emplace(packageKey(host), report.freedBytes);
  for (const std::string& name : plan.alsoRemoves)
    gonePackages_.emplace(packageKey(host, name), 0);
  report.removedItems = 1;
  return tell(item, report);
}

bool AsMDeleteExecutor::allocAuthorization() {
  if (std::exchange(isValidAuth_, true)) return true;
  int status = authorization().create(authorizationRef_);
  if (status != 0) {
    SystemLog::line("Error Creating Initial Authorization: {}", status);
  } else if ((status = authorization().copyRights(authorizationRef_, kAdministrator, kAsk)) != 0) {
    SystemLog::line("Copy Rights Unsuccessful: {}", status);
  } else if ((status = authorization().makeExternalForm(authorizationRef_, authForm_)) != 0) {
    SystemLog::line("Make ExternalForm Unsuccessful: {}", status);
  }
  if (status == 0) return true;
  freeAuthorization();
  return false;
}

Authorization::Reference AsMDeleteExecutor::authorizationRef() {
  Authorization::Reference reference = 0;
  if (!isValidAuth_) return reference;
  int status = authorization().createFromExternalForm(authForm_, reference);
  if (status != 0) {
    SystemLog::line("Creat authorization failed: {}", status);
    return reference;
  }
  status = authorization().copyRights(reference, kAdministrator, kAskAgain);
  if (status != 0) SystemLog::line("Copy authorization failed: {}", status);
  status = authorization().rightDefinition(kAdministrator);
  if (status != 0) SystemLog::line("Get authoriztion failed: {}", status);
  return reference;
}

void AsMDeleteExecutor::freeAuthorization() {
  if (authorizationRef_ != 0) {
    const int status = authorization().free(std::exchange(authorizationRef_, 0));
    if (status != 0) SystemLog::line("Free authorization failed: {}", status);
  }
  isValidAuth_ = false;
  authForm_ = {};
}

RemovalReport AsMDeleteExecutor::authDeleteAtPath(const std::string& path,
                                                  const std::optional<FileIdentity>& shown) {
  PrivilegedPlace place = privilegedPlace(path);
  if (place.end) {
    // "rm -rf" has nothing to say about it. It is not run: whatever comes there now was not shown.
    if (place.end->outcome == RemovalOutcome::missing) {
      place.end->outcome = RemovalOutcome::removed;
    }
    return *std::move(place.end);
  }
  if (!shown) return notShown();
  const Authorization::Reference reference = authorizationRef();
  bool toolHasGone = false;
  RemovalReport report = runPrivilegedTool(reference, place.path, shown, toolHasGone);
  if (reference != 0) authorization().free(reference);
  if (toolHasGone) freeAuthorization();
  return report;
}

}  // namespace brisko
