#include "Operations.h"

#include "CommUti.h"
#include "Description.h"
#include "DirectWay.h"
#include "Failure.h"
#include "FileSystems.h"
#include "Guard.h"
#include "MountFolder.h"
#include "SystemLog.h"
#include "UDisksWay.h"

#include <fmt/format.h>

#include <algorithm>
#include <csignal>

#include <unistd.h>

namespace brisko::diskutil {
namespace {

/// The mounts taken away for an operation, to be put back.
class Unmounted {
 public:
  explicit Unmounted(Way& way) : way_(way) {}

  /// All mounts of these devices, the latest first. When one fails the others are put back.
  void take(const std::vector<const Device*>& devices) {
    struct Place {
      const Device* device;
      const Mount* mount;
    };
    std::vector<Place> places;
    for (const Device* device : devices) {
      for (const Mount& mount : device->mounts) {
        if (mount.part != "/" && mount.type != "btrfs") {
          throw Failure(fmt::format("a folder of {} is mounted at {} by itself",
                                    device->block.identifier, escapedForDisplay(mount.target)));
        }
        places.push_back({device, &mount});
      }
    }
    std::sort(places.begin(), places.end(), [](const Place& left, const Place& right) {
      return left.mount->id > right.mount->id;
    });
    for (const auto& [device, mount] : places) {
      orPutBack([&] { way_.unmount(*device, *mount); });
      taken_.emplace_back(device, mount);
    }
  }

  bool isAny() const { return !taken_.empty(); }

  /// When `work` fails, what is left, old or new, goes back to where it was. Throws the first
  /// reason, with what could not be put back.
  template <typename Work>
  void orPutBack(const Work& work) {
    try {
      work();
    } catch (const Failure& failure) {
      const std::string problem = putBack();
      throw Failure(problem.empty() ? failure.what() : failure.what() + ("; " + problem));
    }
  }

  /// Puts all back, in folders for `name` (empty: each for the name it has), and says what could
  /// not be.
  std::string putBack(const std::string& name = {}) {
    std::string problem;
    for (auto place = taken_.rbegin(); place != taken_.rend(); ++place) {
      const auto& [device, mount] = *place;
      try {
        folder_ = way_.mountAgain(*device, *mount, name.empty() ? device->signature.label : name);
      } catch (const Failure& failure) {
        problem = fmt::format("{} could not be mounted again: {}", device->block.identifier,
                              failure.what());
      }
    }
    taken_.clear();
    return problem;
  }

  const std::string& folder() const { return folder_; }

 private:
  Way& way_;
  std::vector<std::pair<const Device*, const Mount*>> taken_;
  std::string folder_;
};

/// From here to the end nobody's key press may leave a volume half made or a disk half taken off.
void ignoreInterrupts() {
  for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
    std::signal(number, SIG_IGN);
}

/// A folder that is named after the volume gets the new name too, by being mounted anew; where that
/// cannot be done the volume goes on under the old one.
void takeFolderAlong(const Inventory& inventory, const Device& device, Unmounted& mounts) {
  const Mount* mount = device.mainMount();
  if (mount == nullptr || !MountFolder::isNamedAfterVolume(mount->target)) return;
  try {
    refuseInUse(inventory, device);
    ignoreInterrupts();
    mounts.take({&device});
  } catch (const Failure&) {
    // Someone works in it.
  }
}

void refuseLabel(std::string_view type, const std::string& name) {
  const std::string problem = labelProblem(type, name);
  if (!problem.empty()) throw Failure(problem);
}

void refuseSize(const Format& format, const Device& device) {
  const std::uint64_t size = device.block.size;
  const std::string& name = device.block.identifier;
  if (size < format.least) {
    throw Failure(fmt::format("{} is too small for {}: it has {}, {} are needed", name, format.name,
                              CommUti::longlongDiskSize(size),
                              CommUti::longlongDiskSize(format.least)));
  }
  if (format.most != 0 && size > format.most) {
    throw Failure(fmt::format("{} is too large for {}, which holds at most {}", name, format.name,
                              CommUti::longlongDiskSize(format.most)));
  }
}

Report make(const Inventory& inventory, const Device& device, const Format& format,
            const std::string& name) {
  const std::unique_ptr<Way> way = openWay(device);
  refuseUnlessVolume(inventory, device);
  refuseInUse(inventory, device);
  const std::string& label = device.signature.label;
  refuseNamedInStart(device,
                     {{"UUID", device.signature.uuid}, {"LABEL", label == name ? "" : label}});
  refuseSize(format, device);
  way->checkFormat(device, format);

  ignoreInterrupts();
  Unmounted mounts(*way);
  mounts.take({&device});
  const bool wasMounted = mounts.isAny();
  mounts.orPutBack([&] { way->format(device, format, name); });
  Report report;
  report.warning = mounts.putBack(name);
  std::string folder = mounts.folder();
  if (!wasMounted) {
    try {
      folder = way->mountNew(device);
    } catch (const Failure& failure) {
      report.warning =
          fmt::format("{} could not be mounted: {}", device.block.identifier, failure.what());
    }
  }
  const Signature made = signatureOf(device.block, true);
  report.done = fmt::format(
      "Formatted {} as {}, {}", device.block.identifier,
      made.isKnown && !made.type.empty() ? namesOf(made).name : std::string(format.name),
      name.empty() ? "without a name" : fmt::format("named \"{}\"", escapedForDisplay(name)));
  if (!folder.empty()) report.done += ", mounted at " + escapedForDisplay(folder);
  return report;
}

}  // namespace

std::unique_ptr<Way> openWay(const Device& device) {
  const bool isAdministrator = geteuid() == 0;
  if (auto service = UDisksWay::connect()) {
    if (!isAdministrator || service->knows(device)) return service;
  }
  if (isAdministrator) return std::make_unique<DirectWay>();
  throw Failure("this needs the disk service UDisks2, which does not run, or the administrator");
}

Report rename(const std::string& volume, const std::string& name) {
  const Inventory inventory = Inventory::read(true);
  const Device& device = inventory.findVolume(volume);
  const std::unique_ptr<Way> way = openWay(device);
  const std::string& type = device.signature.type;
  const std::string& id = device.block.identifier;
  if (type.empty() || device.signature.usage != "filesystem")
    throw Failure(id + " holds no file system that could be renamed");
  if (device.block.isReadOnly) throw Failure(id + " cannot be written: it is read-only");
  refuseLabel(type, name);
  refuseNamedInStart(device, {{"LABEL", device.signature.label}});
  const std::string stored = storedLabel(type, name);
  way->checkRename(device, stored);

  const bool whileMounted = way->renamesMounted(device);
  Unmounted mounts(*way);
  if (!whileMounted) {
    refuseInUse(inventory, device);
    ignoreInterrupts();
    mounts.take({&device});
  }
  mounts.orPutBack([&] { way->rename(device, stored); });
  Report report;
  if (whileMounted) takeFolderAlong(inventory, device, mounts);
  report.warning = mounts.putBack(stored);
  report.done = fmt::format("Renamed {} to \"{}\"", id, escapedForDisplay(stored));
  return report;
}

Report eraseVolume(const std::string& type, const std::string& name, const std::string& node) {
  const Format* format = formatNamed(type);
  if (format == nullptr) {
    throw WrongUsage(fmt::format("unknown type \"{}\"; the types are {}", escapedForDisplay(type),
                                 formatNames()));
  }
  refuseLabel(format->type, name);
  const Inventory inventory = Inventory::read(true);
  return make(inventory, inventory.find(node), *format, storedLabel(format->type, name));
}

Report reformat(const std::string& node) {
  const Inventory inventory = Inventory::read(true);
  const Device& device = inventory.find(node);
  const Format* format = formatOf(device.signature);
  if (format == nullptr) {
    refuseUnlessVolume(inventory, device);
    const std::string name = namesOf(device.signature).name;
    throw Failure(name.empty() ? device.block.identifier + " holds no file system to make again"
                               : fmt::format("{} cannot be made again: nothing here makes {}",
                                             device.block.identifier, escapedForDisplay(name)));
  }
  const std::string& label = device.signature.label;
  return make(inventory, device, *format, labelProblem(format->type, label).empty() ? label : "");
}

Report eject(const std::string& node) {
  const Inventory inventory = Inventory::read(true);
  const Disk& disk = inventory.diskOf(inventory.find(node));
  const std::string& name = disk.device.block.identifier;
  refuseInUse(inventory, disk.device);
  if (!isEjectable(inventory, disk.device))
    throw Failure(name + " is built in and cannot be ejected");
  const std::unique_ptr<Way> way = openWay(disk.device);
  way->checkEject(disk);

  std::vector<const Device*> all = {&disk.device};
  for (const Device& partition : disk.partitions)
    all.push_back(&partition);
  ignoreInterrupts();
  Unmounted mounts(*way);
  mounts.take(all);
  mounts.orPutBack([&] { way->eject(disk); });
  return {fmt::format("Ejected {}", name), {}};
}

}  // namespace brisko::diskutil
