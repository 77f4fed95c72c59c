// diskutil: lists the machine's disks and volumes, and renames, formats and ejects them.

#include "CommandLine.h"
#include "Failure.h"
#include "SystemLog.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include <fmt/format.h>

namespace {

// The programs started from here get nothing of the caller's environment: only fixed folders to be
// found in, and a way to write names beyond ASCII. (The bus's address leads to the disk service.)
void shutOut() {
  const char* address = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
  const std::string kept = address != nullptr ? address : "";
  clearenv();
  setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1);
  setenv("LC_ALL", "C.UTF-8", 1);
  if (address != nullptr) setenv("DBUS_SYSTEM_BUS_ADDRESS", kept.c_str(), 1);
}

int fail(const char* reason, int status) {
  fmt::print(stderr, "diskutil: {}\n", brisko::escapedForDisplay(reason));
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  shutOut();
  try {
    brisko::diskutil::runCommand(std::vector<std::string>(argv + 1, argv + argc));
    return 0;
  } catch (const brisko::diskutil::WrongUsage& wrong) {
    return fail(wrong.what(), 2);
  } catch (const std::exception& failure) {
    return fail(failure.what(), 1);
  }
}
