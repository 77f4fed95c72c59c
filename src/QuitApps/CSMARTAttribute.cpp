#include "CSMARTAttribute.h"

#include "AtaSmart.h"
#include "Dispatch.h"
#include "Host.h"
#include "NSNotificationCenter.h"
#include "SystemLog.h"

#include <cerrno>
#include <utility>

namespace brisko {

CSMARTAttribute::CSMARTAttribute(std::chrono::milliseconds interval) : interval_(interval) {}

CSMARTAttribute::~CSMARTAttribute() = default;

std::optional<SmartNode> CSMARTAttribute::deviceNamed(std::string path) const {
  SmartDevice& registry = *Host::current().smartDevice;
  if (path.starts_with("/dev/rdisk")) {
    path.erase(0, 6);
  } else if (path.starts_with("/dev/disk")) {
    path.erase(0, 5);
  }
  if (path.starts_with("disk")) {
    SystemLog::write("IOServiceGetMatchingService");
    return registry.nodeWithName(path);
  }
  SystemLog::write("IORegistryEntryFromPath");
  return registry.nodeAtPath(path);
}

bool CSMARTAttribute::findInterface(const std::optional<std::string>& name) {
  SmartDevice& registry = *Host::current().smartDevice;
  const std::string path = "/dev/" + name.value_or("disk0");
  SystemLog::line("pathname = {}", path);
  std::optional<SmartNode> object = deviceNamed(path);
  while (object && !is_smart_capable(*object))
    object = registry.parent(*object);
  if (!object) {
    SystemLog::write("Find this device's parent and try again");
    state_ = State::noDevice;
    error_ = ENODEV;
    errno = ENODEV;
    return false;
  }
  int error = 0;
  smartIf = registry.open(*object, error);
  if (smartIf) return true;
  SystemLog::write("Please enable smart!");
  state_ = State::noInterface;
  error_ = error;
  return false;
}

CSMARTAttribute::State CSMARTAttribute::GetSmartAttribute(const std::optional<std::string>& name) {
  if (!findInterface(name)) return state_;
  readFirst();
  temperatureTimer.schedule(interval_, [this] { GetThreaholds(); });
  return state_;
}

void CSMARTAttribute::readFirst() {
  int error = smartIf->enable();
  if (error != 0) {
    SystemLog::line("SMARTEnableDisableOperations failed with {}!", error);
  } else {
    SystemLog::write("SMARTEnableDisableOperations enable success");
    error = smartIf->hasHealthLog() ? readHealthLog() : readSectors(false);
  }
  error_ = error;
  state_ = error == 0 ? State::answering : State::notAnswering;
}

int CSMARTAttribute::readHealthLog() {
  SmartHealth health;
  const int error = smartIf->readHealth(health);
  if (error != 0) {
    SystemLog::line("SMARTReadData failed with {}!", error);
    return error;
  }
  SystemLog::write("SMARTReadData success");
  iTemperature = health.temperature;
  u64PowerOnHour = health.powerOnHours;
  u64PowerCycleCount = health.powerCycles;
  return 0;
}

int CSMARTAttribute::readSectors(bool zeroesTemperature) {
  SmartSector data{};
  int error = smartIf->readData(data);
  if (error != 0) {
    SystemLog::line("SMARTReadData failed with {}!", error);
    return error;
  }
  SystemLog::write("SMARTReadData success");
  // Read only to see whether the drive still answers as it should.
  SmartSector thresholds{};
  error = smartIf->readThresholds(thresholds);
  if (error != 0) {
    if (zeroesTemperature) iTemperature = 0;
    SystemLog::line("SMARTReadDataThresholds failed with {}!", error);
    return error;
  }
  if (!zeroesTemperature) SystemLog::write("SMARTReadDataThresholds success");
  PrintSMART(data);
  return 0;
}

void CSMARTAttribute::PrintSMART(const SmartSector& data) {
  for (std::size_t index = 0; index < kAtaSmartAttributes; ++index) {
    const AtaSmartAttribute attribute = ataSmartAttribute(data, index);
    if (attribute.id == 194) {
      SystemLog::write("iTemperature begin");
      iTemperature = static_cast<std::int32_t>(ata_format_attr_raw_value(attribute));
    } else if (attribute.id == 12) {
      SystemLog::write("Power_Cycle_Count begin");
      u64PowerCycleCount = ata_format_attr_raw_value(attribute);
    } else if (attribute.id == 9) {
      SystemLog::write("Power on hours begin");
      u64PowerOnHour = ata_format_attr_raw_value(attribute);
    }
  }
  SystemLog::line("Uptime = {}, Powercyclecount = {}, iTemperature = {}", u64PowerOnHour.load(),
                  u64PowerCycleCount.load(), iTemperature.load());
}

void CSMARTAttribute::GetThreaholds() {
  if (!smartIf) return;
  const int error = smartIf->hasHealthLog() ? readHealthLog() : readSectors(true);
  error_ = error;
  if (error == 0) state_ = State::answering;
  const std::int32_t temperature = iTemperature;
  if (temperature <= 0) return;
  Dispatch::mainAsync([temperature] {
    NSNotificationCenter::defaultCenter().postNotification(
        {kUpdateTemperature, std::to_string(temperature), nullptr, {}});
  });
}

}  // namespace brisko
