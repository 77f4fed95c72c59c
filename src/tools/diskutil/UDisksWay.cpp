#include "UDisksWay.h"

#include "Failure.h"
#include "SystemLog.h"

#include <cstring>
#include <utility>

#include <fmt/format.h>

namespace brisko::diskutil {
namespace {

constexpr const char* kService = "org.freedesktop.UDisks2";
constexpr const char* kManagerPath = "/org/freedesktop/UDisks2/Manager";
constexpr const char* kManager = "org.freedesktop.UDisks2.Manager";
constexpr const char* kBlock = "org.freedesktop.UDisks2.Block";
constexpr const char* kFileSystem = "org.freedesktop.UDisks2.Filesystem";
constexpr const char* kDrive = "org.freedesktop.UDisks2.Drive";
constexpr const char* kLoop = "org.freedesktop.UDisks2.Loop";
constexpr std::uint64_t kSecond = 1000000;
// Making a file system on a slow drive, and someone who looks for the password, take their time.
constexpr std::uint64_t kPatience = 4 * 3600 * kSecond;

/// A call with its answer, and both released with it.
class Call {
 public:
  Call(sd_bus* bus, const std::string& object, const char* interface, const char* method)
      : bus_(bus) {
    if (sd_bus_message_new_method_call(bus, &request_, kService, object.c_str(), interface,
                                       method) < 0) {
      throw Failure("the disk service cannot be asked");
    }
    sd_bus_message_set_allow_interactive_authorization(request_, 1);
  }
  ~Call() {
    sd_bus_error_free(&error_);
    sd_bus_message_unref(request_);
    sd_bus_message_unref(answer_);
  }
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  sd_bus_message* request() { return request_; }

  bool succeeds(std::uint64_t timeout = kPatience) {
    return sd_bus_call(bus_, request_, timeout, &error_, &answer_) >= 0;
  }
  /// The answer; throws the service's own words.
  sd_bus_message* answer(std::uint64_t timeout = kPatience) {
    if (succeeds(timeout)) return answer_;
    std::string said = error_.message != nullptr ? error_.message : "the disk service refused";
    for (char& character : said)
      if (character == '\n') character = ' ';
    throw Failure(escapedForDisplay(said));
  }

 private:
  sd_bus* bus_;
  sd_bus_message* request_ = nullptr;
  sd_bus_message* answer_ = nullptr;
  sd_bus_error error_ = SD_BUS_ERROR_NULL;
};

void appendNoOptions(Call& call) {
  sd_bus_message_append(call.request(), "a{sv}", 0);
}

std::string textIn(sd_bus_message* answer, const char* type) {
  const char* text = nullptr;
  return sd_bus_message_read(answer, type, &text) > 0 && text != nullptr ? text : "";
}

}  // namespace

std::unique_ptr<UDisksWay> UDisksWay::connect() {
  sd_bus* bus = nullptr;
  if (sd_bus_open_system(&bus) < 0) return nullptr;
  std::unique_ptr<UDisksWay> way(new UDisksWay(bus));
  Call call(bus, kManagerPath, "org.freedesktop.DBus.Properties", "Get");
  sd_bus_message_append(call.request(), "ss", kManager, "Version");
  return call.succeeds(15 * kSecond) ? std::move(way) : nullptr;
}

UDisksWay::~UDisksWay() {
  sd_bus_flush_close_unref(bus_);
}

std::string UDisksWay::objectOf(const Device& device) {
  Call call(bus_, kManagerPath, kManager, "ResolveDevice");
  sd_bus_message_append(call.request(), "a{sv}", 1, "path", "s", device.block.node().c_str());
  appendNoOptions(call);
  sd_bus_message* answer = call.answer();
  sd_bus_message_enter_container(answer, SD_BUS_TYPE_ARRAY, "o");
  std::string object = textIn(answer, "o");
  if (object.empty()) throw Failure("the disk service does not know " + device.block.identifier);
  return object;
}

std::string UDisksWay::driveOf(const Device& device) {
  Call call(bus_, objectOf(device), "org.freedesktop.DBus.Properties", "Get");
  sd_bus_message_append(call.request(), "ss", kBlock, "Drive");
  sd_bus_message* answer = call.answer();
  sd_bus_message_enter_container(answer, SD_BUS_TYPE_VARIANT, "o");
  const std::string object = textIn(answer, "o");
  return object == "/" ? std::string() : object;
}

bool UDisksWay::flagOf(const std::string& object, const char* interface, const char* property) {
  Call call(bus_, object, "org.freedesktop.DBus.Properties", "Get");
  sd_bus_message_append(call.request(), "ss", interface, property);
  sd_bus_message* answer = call.answer();
  int value = 0;
  return sd_bus_message_read(answer, "v", "b", &value) > 0 && value != 0;
}

void UDisksWay::checkRename(const Device& device, const std::string&) {
  objectOf(device);
}

void UDisksWay::checkFormat(const Device& device, const Format& format) {
  objectOf(device);
  Call call(bus_, kManagerPath, kManager, "CanFormat");
  sd_bus_message_append(call.request(), "s", std::string(format.type).c_str());
  if (!call.succeeds())
    throw Failure(fmt::format("the disk service cannot make {}", format.name));
  sd_bus_message* answer = call.answer();
  int able = 0;
  const char* missing = nullptr;
  sd_bus_message_read(answer, "(bs)", &able, &missing);
  if (able != 0) return;
  throw Failure(fmt::format("this system has no {}{}", missing != nullptr ? missing : "program",
                            format.package.empty()
                                ? std::string()
                                : fmt::format("; the package {} brings it", format.package)));
}

void UDisksWay::checkEject(const Disk& disk) {
  const LinuxBlockDevice& block = disk.device.block;
  if (!block.isLoop && driveOf(disk.device).empty())
    throw Failure("the disk service cannot eject " + block.identifier);
}

void UDisksWay::unmount(const Device& device, const Mount&) {
  Call call(bus_, objectOf(device), kFileSystem, "Unmount");
  appendNoOptions(call);
  call.answer();
}

std::string UDisksWay::mount(const Device& device) {
  Call call(bus_, objectOf(device), kFileSystem, "Mount");
  appendNoOptions(call);
  return textIn(call.answer(), "s");
}

std::string UDisksWay::mountAgain(const Device& device, const Mount&, const std::string&) {
  return mount(device);
}

std::string UDisksWay::mountNew(const Device& device) {
  return mount(device);
}

void UDisksWay::rename(const Device& device, const std::string& name) {
  Call call(bus_, objectOf(device), kFileSystem, "SetLabel");
  sd_bus_message_append(call.request(), "s", name.c_str());
  appendNoOptions(call);
  call.answer();
}

void UDisksWay::format(const Device& device, const Format& format, const std::string& name) {
  const std::string type(format.type);
  Call call(bus_, objectOf(device), kBlock, "Format");
  sd_bus_message* request = call.request();
  sd_bus_message_append(request, "s", type.c_str());
  sd_bus_message_open_container(request, SD_BUS_TYPE_ARRAY, "{sv}");
  if (!name.empty()) sd_bus_message_append(request, "{sv}", "label", "s", name.c_str());
  sd_bus_message_append(request, "{sv}", "update-partition-type", "b", 1);
  if (type == "ext4") sd_bus_message_append(request, "{sv}", "take-ownership", "b", 1);
  // Services that do not know this yet choose the kind of FAT by the size.
  if (type == "vfat") {
    sd_bus_message_append(request, "{sv}", "mkfs-args", "as", 2, "-F",
                          format.name.ends_with("16") ? "16" : "32");
  }
  sd_bus_message_close_container(request);
  call.answer();
}

void UDisksWay::eject(const Disk& disk) {
  if (disk.device.block.isLoop) {
    Call call(bus_, objectOf(disk.device), kLoop, "Delete");
    appendNoOptions(call);
    call.answer();
    return;
  }
  const std::string drive = driveOf(disk.device);
  // A medium comes out of its drive; a drive without one is switched off.
  const char* method = nullptr;
  if (flagOf(drive, kDrive, "MediaRemovable") && flagOf(drive, kDrive, "Ejectable")) {
    method = "Eject";
  } else if (flagOf(drive, kDrive, "CanPowerOff")) {
    method = "PowerOff";
  } else {
    return;  // unmounted, it can be pulled out
  }
  Call call(bus_, drive, kDrive, method);
  appendNoOptions(call);
  call.answer();
}

}  // namespace brisko::diskutil
