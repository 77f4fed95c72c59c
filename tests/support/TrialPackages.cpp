#include "TrialPackages.h"

#include "HostTools.h"
#include "Machine.h"

#include <algorithm>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace brisko::test {

TrialPackages::TrialPackages()
    : turn_(::open((buildTree() + "/trial-packages.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC,
                   0600)) {
  ::flock(turn_.get(), LOCK_EX);
}

TrialPackages::~TrialPackages() {
  while (!installed_.empty())
    purge(std::string(installed_.back()));
}

std::string TrialPackages::install(const std::string& name, const std::string& fields) {
  if (!isRoot()) return "only root may install packages";
  for (const char* tool : {"/usr/bin/apt-get", "/usr/bin/dpkg-deb", "/usr/bin/dpkg"}) {
    if (::access(tool, X_OK) != 0) return std::string("there is no ") + tool;
  }
  const std::string package = full(name);
  folder_.file(package + "/DEBIAN/control", "Package: " + package +
                                                "\nVersion: 1.2-3\nArchitecture: all\n"
                                                "Maintainer: Nobody <nobody@example.org>\n"
                                                "Installed-Size: 12\n" +
                                                fields + "Description: made for a test\n");
  folder_.file(package + "/usr/share/applications/" + package + ".desktop",
               "[Desktop Entry]\nType=Application\nName=Trial\nExec=true\n");
  const std::string file = folder_ / package + ".deb";
  const auto built =
      HostTools::run({"dpkg-deb", "--root-owner-group", "-b", folder_ / package, file});
  if (built.status != 0) return built.errors;
  installed_.push_back(name);
  // Something else on the machine may have the lock for a while.
  constexpr int kTries = 20;
  for (int i = 0;; ++i) {
    const auto done = HostTools::run({"dpkg", "-i", file});
    const bool isLocked = done.errors.find("lock") != std::string::npos;
    if (done.status == 0) return "";
    if (!isLocked || i == kTries) return done.errors.substr(0, done.errors.find('\n'));
    ::usleep(500'000);
  }
}

void TrialPackages::purge(const std::string& name) {
  std::erase(installed_, name);
  if (isInstalled(name)) {
    HostTools::run({"dpkg", "--purge", "--force-remove-essential", full(name)});
  }
}

bool TrialPackages::isInstalled(const std::string& name) {
  const auto asked = HostTools::run({"dpkg-query", "-W", "-f=${db:Status-Status}", full(name)});
  return asked.output == "installed";
}

std::string TrialPackages::all() {
  return HostTools::run({"dpkg-query", "-W"}).output;
}

}  // namespace brisko::test
