#pragma once

#include "Way.h"

#include <systemd/sd-bus.h>

namespace brisko::diskutil {

/// The way through UDisks2, which asks the user for permission by the desktop's own means.
class UDisksWay : public Way {
 public:
  /// Null when the service neither runs nor can be started.
  static std::unique_ptr<UDisksWay> connect();
  ~UDisksWay() override;
  UDisksWay(const UDisksWay&) = delete;
  UDisksWay& operator=(const UDisksWay&) = delete;

  void checkRename(const Device& device, const std::string& name) override;
  void checkFormat(const Device& device, const Format& format) override;
  void checkEject(const Disk& disk) override;
  void unmount(const Device& device, const Mount& mount) override;
  std::string mountAgain(const Device& device, const Mount& mount,
                         const std::string& name) override;
  std::string mountNew(const Device& device) override;
  void rename(const Device& device, const std::string& name) override;
  void format(const Device& device, const Format& format, const std::string& name) override;
  void eject(const Disk& disk) override;

 private:
  explicit UDisksWay(sd_bus* bus) : bus_(bus) {}

  std::string objectOf(const Device& device);
  std::string driveOf(const Device& device);
  bool flagOf(const std::string& object, const char* interface, const char* property);
  std::string mount(const Device& device);

  sd_bus* bus_;
};

}  // namespace brisko::diskutil
