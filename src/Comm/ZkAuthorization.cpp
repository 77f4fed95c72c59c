#include "ZkAuthorization.h"

#include "DeletablePermission.h"
#include "Host.h"
#include "PrivilegedRemoval.h"
#include "SystemLog.h"

#include <utility>

namespace brisko {
namespace {

constexpr const char* kAdministrator = "system.privilege.admin";
constexpr const char* kBless = "com.apple.ServiceManagement.blesshelper";
constexpr unsigned kAsk =
    Authorization::interactionAllowed | Authorization::extendRights | Authorization::preAuthorize;
constexpr unsigned kAskAgain = Authorization::interactionAllowed | Authorization::extendRights;

ZkAuthorization*& shared() {
  static ZkAuthorization* instance = nullptr;
  return instance;
}

Authorization& authorization() {
  return *Host::current().authorization;
}

RemovalReport reportOf(RemovalOutcome outcome, std::string reason) {
  RemovalReport report;
  report.outcome = outcome;
  report.reason = std::move(reason);
  return report;
}

// Whether the administrator's right may make a difference.
bool isWorthAsking(const RemovalReport& report) {
  return report.outcome == RemovalOutcome::notPermitted || report.outcome == RemovalOutcome::failed;
}

void logFailure(const std::string& path, const RemovalReport& report) {
  SystemLog::line("Remove failed: {}: {}", path, report.reason);
}

}  // namespace

ZkAuthorization& ZkAuthorization::shareZkAuthorization() {
  if (shared() == nullptr) shared() = new ZkAuthorization;
  return *shared();
}

ZkAuthorization::~ZkAuthorization() {
  if (shared() == this) shared() = nullptr;
  freeAuthorization();
}

bool ZkAuthorization::allocAuthorization() {
  if (isValidAuth_) return true;
  isValidAuth_ = true;
  lastStatus_ = authorization().create(authorizationRef_);
  if (lastStatus_ != 0) {
    SystemLog::line("Error Creating Initial Authorization: {}", lastStatus_);
  } else if ((lastStatus_ = authorization().copyRights(authorizationRef_, kAdministrator, kAsk)) !=
             0) {
    SystemLog::line("Copy Rights failed: {}", lastStatus_);
  } else if ((lastStatus_ = authorization().makeExternalForm(authorizationRef_, authForm_)) != 0) {
    SystemLog::line("Make ExternalForm failed: {}", lastStatus_);
  }
  if (lastStatus_ == 0) return true;
  freeAuthorization();
  return false;
}

bool ZkAuthorization::freeAuthorization() {
  if (!isValidAuth_) return true;
  const int status = authorization().free(authorizationRef_);
  if (status != 0) SystemLog::line("Free Rights failed: {}", status);
  authorizationRef_ = 0;
  isValidAuth_ = false;
  return true;
}

Authorization::Reference ZkAuthorization::getAuthorizationRet() {
  if (!isValidAuth_) return 0;
  Authorization::Reference reference = 0;
  int status = authorization().createFromExternalForm(authForm_, reference);
  if (status != 0) {
    SystemLog::line("Creat Ret failed: {}", status);
    return reference;
  }
  status = authorization().copyRights(reference, kAdministrator, kAskAgain);
  if (status != 0) SystemLog::line("Copy Rights failed: {}", status);
  status = authorization().rightDefinition(kAdministrator);
  if (status != 0) SystemLog::line("Get Rights failed: {}", status);
  return reference;
}

bool ZkAuthorization::synFastRemovePath(const std::string& path) {
  return synFastRemovePath(path, std::nullopt).gone();
}

RemovalReport ZkAuthorization::synFastRemovePath(const std::string& path,
                                                 const std::optional<FileIdentity>& shown,
                                                 const std::atomic<bool>* cancel) {
  // What is refused must not have its mode changed either.
  if (auto refusal = RemovalEngine().refusal(path)) {
    logFailure(path, *refusal);
    return *std::move(refusal);
  }
  // Without anything shown, the privileged side shall at least meet the item that we met.
  const auto met = shown ? shown : FileIdentity::at(path);
  const DeletablePermission permission(path, shown);
  RemovalReport report = RemovalEngine().remove(path, shown, cancel);
  if (!isWorthAsking(report)) return report;
  RemovalReport privileged = removePrivileged(path, met);
  privileged.freedBytes += report.freedBytes;
  privileged.removedItems += report.removedItems;
  if (!privileged.removed()) logFailure(path, privileged);
  return privileged;
}

bool ZkAuthorization::removeItemAtPath(const std::string& path) {
  const RemovalReport report =
      shareZkAuthorization().removePrivileged(path, FileIdentity::at(path));
  if (!report.removed()) logFailure(path, report);
  return report.gone();
}

RemovalReport ZkAuthorization::removePrivileged(const std::string& path,
                                                const std::optional<FileIdentity>& shown) {
  PrivilegedPlace place = privilegedPlace(path);
  return place.end ? *std::move(place.end) : runTool(place.path, shown);
}

RemovalReport ZkAuthorization::runTool(const std::string& path,
                                       const std::optional<FileIdentity>& shown) {
  if (!allocAuthorization()) {
    const bool refused = lastStatus_ == Authorization::kCancelled;
    return reportOf(refused ? RemovalOutcome::cancelled : RemovalOutcome::notPermitted,
                    "The administrator's right was not given.");
  }
  const Authorization::Reference reference = getAuthorizationRet();
  bool toolHasGone = false;
  RemovalReport report = runPrivilegedTool(reference, path, shown, toolHasGone);
  if (reference != 0) authorization().free(reference);
  // What is left of the right is given back, so that it can be asked for anew.
  if (toolHasGone) freeAuthorization();
  return report;
}

bool ZkAuthorization::blessHelperWithLabel(const std::string& label, int* error) {
  if (isValidAuth_) return true;
  lastStatus_ = authorization().create(authorizationRef_);
  if (lastStatus_ == 0) lastStatus_ = authorization().copyRights(authorizationRef_, kBless, kAsk);
  if (lastStatus_ != 0) {
    SystemLog::line("Failed to create AuthorizationRef. Error code: {}", lastStatus_);
    if (authorizationRef_ != 0) authorization().free(std::exchange(authorizationRef_, 0));
    if (error != nullptr) *error = lastStatus_;
    return isValidAuth_;
  }
  isValidAuth_ = authorization().bless(authorizationRef_, label);
  if (!isValidAuth_ && error != nullptr) *error = Authorization::kToolFailed;
  return isValidAuth_;
}

}  // namespace brisko
