#include "Host.h"
#include "LinuxAuthorization.h"
#include "LinuxCatalog.h"
#include "LinuxHostActivity.h"
#include "LinuxHostFolders.h"
#include "LinuxHostStatistics.h"
#include "LinuxInstalledApplications.h"
#include "LinuxLoginItems.h"
#include "LinuxPowerAssertion.h"
#include "LinuxPreferences.h"
#include "LinuxSmartDevice.h"
#include "LinuxSystemVersion.h"
#include "LinuxWorkspace.h"

namespace brisko {

std::unique_ptr<Host> makeHost(const HostOptions& options) {
  auto host = std::make_unique<Host>();
  host->folders = std::make_unique<LinuxHostFolders>(options.root);
  const HostFolders& folders = *host->folders;
  host->catalog = std::make_unique<LinuxCatalog>();
  host->authorization = std::make_unique<LinuxAuthorization>();
  host->preferences = std::make_unique<LinuxPreferences>(
      folders.variable("XDG_CONFIG_HOME").value_or("") + "/brisko/Preferences");
  host->systemVersion = std::make_unique<LinuxSystemVersion>(
      folders.path("/System/Library/CoreServices/SystemVersion.plist"));
  host->loginItems = std::make_unique<LinuxLoginItems>(folders, *host->preferences);
  host->installedApplications = std::make_unique<LinuxInstalledApplications>(folders);
  // Figures are those of the machine that runs, whatever stands for "/".
  host->statistics = std::make_unique<LinuxHostStatistics>();
  host->activity = std::make_unique<LinuxHostActivity>();
  host->powerAssertion = std::make_unique<LinuxPowerAssertion>();
  host->workspace = std::make_unique<LinuxWorkspace>();
  host->smartDevice = std::make_unique<LinuxSmartDevice>();
  return host;
}

}  // namespace brisko
