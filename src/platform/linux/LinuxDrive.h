#pragma once

#include <string>

#include <sys/types.h>

namespace brisko {

struct LinuxBlockDevice;

/// The text of a small file of sysfs without the blanks around it; empty when it is not there.
std::string sysfsText(const std::string& file);

/// What the device manager knows of the device with this folder in sysfs; empty when it does not.
std::string udevProperty(const std::string& folder, const char* key);

/// A text of the device manager, which writes bytes that its properties and names cannot carry as
/// \xNN.
std::string udevDecoded(const std::string& text);

/// The device node that belongs to a folder of sysfs; number 0 for one that is no block device.
struct LinuxNode {
  std::string path;
  dev_t number = 0;
};
LinuxNode linuxNodeOf(const std::string& folder);

/// Fills what describes the drive of a whole disk: its bus, model, and whether it comes off.
void describeDrive(LinuxBlockDevice& disk);

}  // namespace brisko
