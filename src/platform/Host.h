#pragma once

#include "Authorization.h"
#include "Catalog.h"
#include "HostActivity.h"
#include "HostFolders.h"
#include "HostStatistics.h"
#include "InstalledApplications.h"
#include "LoginItems.h"
#include "PowerAssertion.h"
#include "Preferences.h"
#include "SmartDevice.h"
#include "SystemVersion.h"
#include "Workspace.h"

#include <memory>
#include <string>

namespace brisko {

struct HostOptions {
  /// The folder that stands for "/", absolute and normalised, without a trailing slash; empty for
  /// the running system itself.
  std::string root;
};

/// The services of the machine this process runs on. Engines reach the machine through these and
/// through POSIX, never through a library of one operating system.
struct Host {
  std::unique_ptr<HostFolders> folders;
  std::unique_ptr<Catalog> catalog;
  std::unique_ptr<Workspace> workspace;
  std::unique_ptr<Authorization> authorization;
  std::unique_ptr<Preferences> preferences;
  std::unique_ptr<SystemVersion> systemVersion;
  std::unique_ptr<LoginItems> loginItems;
  std::unique_ptr<InstalledApplications> installedApplications;
  std::unique_ptr<SmartDevice> smartDevice;
  std::unique_ptr<HostStatistics> statistics;
  std::unique_ptr<HostActivity> activity;
  std::unique_ptr<PowerAssertion> powerAssertion;

  /// The host in use. The first call makes the running system's own when none was installed.
  static Host& current();

  /// Puts `host` in place of the current one and returns that. To be called before background work
  /// starts: services are read from every thread without a lock.
  static std::unique_ptr<Host> install(std::unique_ptr<Host> host);
};

/// The services of the operating system that this build is for.
std::unique_ptr<Host> makeHost(const HostOptions& options);

}  // namespace brisko
