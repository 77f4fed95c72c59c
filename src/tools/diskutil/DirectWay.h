#pragma once

#include "Way.h"

namespace brisko::diskutil {

/// The administrator's way: the system's own programs and calls.
class DirectWay : public Way {
 public:
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
};

}  // namespace brisko::diskutil
