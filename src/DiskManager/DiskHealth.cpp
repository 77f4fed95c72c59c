#include "DiskHealth.h"

#include "Dispatch.h"
#include "NSNotificationCenter.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace brisko {

std::string groupedNumber(std::uint64_t number) {
  std::string text = std::to_string(number);
  for (std::size_t end = text.size(); end > 3; end -= 3)
    text.insert(end - 3, ",");
  return text;
}

std::string smartExplanation(const CSMARTAttribute& reader, const std::string& device) {
  const int error = reader.error();
  if (reader.state() == CSMARTAttribute::State::noDevice) {
    return fmt::format("There is no drive \"{}\" that reports its health.", device);
  }
  if (error == EACCES || error == EPERM) {
    return fmt::format(
        "Only the administrator may ask this drive. \"sudo brisko smart --device {}\" shows its "
        "health.",
        device);
  }
  if (error == ENODEV || error == ENOENT) return "The drive is gone.";
  if (error == ENOTSUP || error == EOPNOTSUPP) return "This drive does not report its health.";
  return fmt::format("The drive did not answer: {}.", std::strerror(error));
}

DiskHealth::DiskHealth(std::function<void()> changed)
    : changed_(std::move(changed)), lifetime_(std::make_shared<Lifetime>()) {
  lifetime_->health = this;
  token_ = NSNotificationCenter::defaultCenter().addObserver(CSMARTAttribute::kUpdateTemperature,
                                                             [this](const NSNotification&) {
                                                               if (state_ == State::shown)
                                                                 changed_();
                                                             });
}

DiskHealth::~DiskHealth() {
  lifetime_->health = nullptr;
  NSNotificationCenter::defaultCenter().removeObserver(token_);
  drop();
}

void DiskHealth::show(const DiskAndVolumeObj* node) {
  const std::string device = node != nullptr && node->isDisk ? node->diskId : "";
  if (device == device_) return;
  drop();
  device_ = device;
  explanation_.clear();
  if (device.empty()) {
    state_ = State::hidden;
  } else if (node->vORpStr == "Virtual") {
    state_ = State::silent;
    explanation_ = "A virtual disk has no drive of its own.";
  } else {
    state_ = State::reading;
    start(device);
  }
  changed_();
}

void DiskHealth::start(const std::string& device) {
  Dispatch::global([lifetime = std::weak_ptr(lifetime_), device] {
    auto reader = std::make_shared<CSMARTAttribute>();
    reader->GetSmartAttribute(device);
    Dispatch::mainAsync([lifetime, device, reader = std::move(reader)]() mutable {
      const auto living = lifetime.lock();
      DiskHealth* health = living ? living->health : nullptr;
      if (health != nullptr && health->device_ == device) health->take(std::move(reader));
    });
  });
}

void DiskHealth::take(std::shared_ptr<CSMARTAttribute> reader) {
  const bool answers = reader->state() == CSMARTAttribute::State::answering;
  state_ = answers ? State::shown : State::silent;
  if (!answers) {
    explanation_ = reader->state() == CSMARTAttribute::State::noDevice
                       ? "This drive does not report its health."
                       : smartExplanation(*reader, device_);
  }
  reader_ = std::move(reader);
  changed_();
}

// Not here: a reading that is under way would be waited for.
void DiskHealth::drop() {
  device_.clear();
  if (reader_) Dispatch::global([reader = std::move(reader_)] {});
  reader_.reset();
}

std::string DiskHealth::temperature() const {
  const int degrees = reader_ ? reader_->GetTemperature() : 0;
  return degrees == 0 ? "Unknow" : fmt::format("{} °C", degrees);
}

std::string DiskHealth::powerOnHours() const {
  return groupedNumber(reader_ ? reader_->GetPowerOnHour() : 0);
}

std::string DiskHealth::powerCycles() const {
  return groupedNumber(reader_ ? reader_->GetPowerCycleCount() : 0);
}

}  // namespace brisko
