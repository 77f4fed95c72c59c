#pragma once

#include "FileSystems.h"
#include "Inventory.h"

#include <memory>
#include <string>

namespace brisko::diskutil {

/// How operations reach a device: through the desktop's disk service, or by the administrator's own
/// programs. Everything throws Failure; the `check` calls write nothing.
class Way {
 public:
  virtual ~Way() = default;

  virtual void checkRename(const Device& device, const std::string& name) = 0;
  virtual void checkFormat(const Device& device, const Format& format) = 0;
  virtual void checkEject(const Disk& disk) = 0;

  /// Unmounts what `mount` shows of the device.
  virtual void unmount(const Device& device, const Mount& mount) = 0;
  /// Mounts the device again after `unmount`, in a folder for its name `name` where people's volumes
  /// have such. Returns the folder.
  virtual std::string mountAgain(const Device& device, const Mount& mount,
                                 const std::string& name) = 0;
  /// Mounts a new volume that was not mounted before. Returns the folder; empty when volumes do not
  /// get mounted by themselves.
  virtual std::string mountNew(const Device& device) = 0;

  virtual void rename(const Device& device, const std::string& name) = 0;
  virtual void format(const Device& device, const Format& format, const std::string& name) = 0;
  virtual void eject(const Disk& disk) = 0;
};

/// The disk service's way when it runs or can be started, else the administrator's. Throws Failure
/// when neither is open to this user.
std::unique_ptr<Way> openWay();

}  // namespace brisko::diskutil
