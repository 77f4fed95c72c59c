#include "RunningBrowsers.h"

#include "BrowserPaths.h"
#include "Dispatch.h"
#include "FileDescriptor.h"
#include "Host.h"
#include "HostTools.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

void add(RunningBrowsers& running, const LaunchedApplication& application,
         const std::string& name) {
  const int process = application.processIdentifier;
  running.processes.push_back({process, Host::current().workspace->processBeginning(process)});
  running.names += running.names.empty() ? name : "," + name;
}

bool isDefinedBrowser(const std::string& name) {
  return name.find("Safari") != std::string::npos || name == "Google Chrome" || name == "Opera" ||
         name == "Firefox";
}

bool isThisBrowser(const LaunchedApplication& application, const BrowerObj& browser) {
  return application.name == browser.name ||
         (!browser.desktopID.empty() && application.bundleIdentifier == browser.desktopID);
}

// A link "HOST-NUMBER" or "HOST:+NUMBER" that a running browser lays: the number's process is
// asked whether it lives. A crash leaves the link behind.
bool isHeldLink(const std::string& path) {
  std::array<char, 512> buffer{};
  const ssize_t length = ::readlink(path.c_str(), buffer.data(), buffer.size());
  if (length <= 0 || length == static_cast<ssize_t>(buffer.size())) return false;
  const std::string text(buffer.data(), static_cast<std::size_t>(length));
  const std::size_t mark = text.find_last_of("-+");
  int process = 0;
  if (mark == std::string::npos) return false;
  const char* end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data() + mark + 1, end, process);
  if (parsed.ec != std::errc() || parsed.ptr != end || process <= 1) return false;
  return ::kill(process, 0) == 0 || errno == EPERM;
}

bool isLockedFile(const std::string& path) {
  const FileDescriptor file(
      ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return file && ::fcntl(file.get(), F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

bool isHeld(const std::string& path) {
  struct stat status;
  if (lstat(path.c_str(), &status) != 0) return false;
  if (S_ISLNK(status.st_mode)) return isHeldLink(path);
  return S_ISREG(status.st_mode) && isLockedFile(path);
}

}  // namespace

RunningBrowsers RunningBrowsers::beforeScan(const std::vector<BrowserRule>& desktopRules) {
  RunningBrowsers running;
  for (const LaunchedApplication& application : Host::current().workspace->launchedApplications()) {
    if (isDefinedBrowser(application.name)) {
      add(running, application, application.name);
      continue;
    }
    const auto rule =
        std::find_if(desktopRules.begin(), desktopRules.end(), [&](const BrowserRule& each) {
          return each.hasDesktopEntry(application.bundleIdentifier);
        });
    if (rule != desktopRules.end()) add(running, application, rule->key);
  }
  return running;
}

RunningBrowsers RunningBrowsers::beforeCleaning(const Browsers& browsers) {
  RunningBrowsers running;
  for (const LaunchedApplication& application : Host::current().workspace->launchedApplications()) {
    const auto browser = std::find_if(browsers.begin(), browsers.end(), [&](const auto& each) {
      return each->isSelect != 0 && isThisBrowser(application, *each);
    });
    if (browser != browsers.end()) add(running, application, (*browser)->name);
  }
  return running;
}

std::string inUseReason(const BrowerObj& browser) {
  for (const LaunchedApplication& application : Host::current().workspace->launchedApplications()) {
    if (isThisBrowser(application, browser)) return browser.name + " is running";
  }
  for (const std::string& location : browser.rule.locks) {
    for (const std::string& lock : BrowserPaths::resolved(location)) {
      if (isHeld(lock)) return browser.name + " is running: it holds " + lock;
    }
  }
  return "";
}

void doCloseWithPID(const RunningBrowsers::Process& process) {
  // 0 and below would name whole groups of processes, 1 is the system's first one.
  if (process.identifier <= 1 || process.beginning == 0 ||
      Host::current().workspace->processBeginning(process.identifier) != process.beginning) {
    return;
  }
  Dispatch::global([number = std::to_string(process.identifier)] {
    HostTools::run({HostTools::path("/bin/kill"), number});
  });
}

}  // namespace brisko
