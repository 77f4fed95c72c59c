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

std::string temperatureText(int degrees) {
  return degrees == 0 ? "Unknow" : fmt::format("{} °C", degrees);
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
                                                               if (reader_) look();
                                                             });
}

DiskHealth::~DiskHealth() {
  lifetime_->health = nullptr;
  NSNotificationCenter::defaultCenter().removeObserver(token_);
  dropLater(std::move(reader_));
}

void DiskHealth::show(const DiskNode& node) {
  const DiskNode disk = node && node->isDisk ? node : nullptr;
  if (disk == node_) return;
  const bool isSameName = disk && node_ && disk->diskId == node_->diskId;
  node_ = disk;
  const bool hasDrive = disk && disk->vORpStr != "Virtual";
  if (hasDrive) start();
  if (hasDrive && isSameName) return;
  dropLater(std::exchange(reader_, nullptr));
  state_ = hasDrive ? State::reading : disk ? State::silent : State::hidden;
  explanation_ = state_ == State::silent ? "A virtual disk has no drive of its own." : "";
  changed_();
}

void DiskHealth::start() {
  Dispatch::global([lifetime = std::weak_ptr(lifetime_), node = node_] {
    auto reader = std::make_shared<CSMARTAttribute>();
    reader->GetSmartAttribute(node->diskId);
    Dispatch::mainAsync([lifetime, node, reader = std::move(reader)]() mutable {
      const auto living = lifetime.lock();
      DiskHealth* health = living ? living->health : nullptr;
      if (health != nullptr && health->node_ == node) {
        health->take(std::move(reader));
      } else {
        dropLater(std::move(reader));
      }
    });
  });
}

void DiskHealth::take(std::shared_ptr<CSMARTAttribute> reader) {
  dropLater(std::exchange(reader_, std::move(reader)));
  look();
}

// A drive that was silent when it was opened may have answered since.
void DiskHealth::look() {
  const bool answers = reader_->state() == CSMARTAttribute::State::answering;
  state_ = answers ? State::shown : State::silent;
  explanation_.clear();
  if (!answers) {
    explanation_ = reader_->state() == CSMARTAttribute::State::noDevice
                       ? "This drive does not report its health."
                       : smartExplanation(*reader_, node_->diskId);
  }
  changed_();
}

// Not here: a reading that is under way would be waited for.
void DiskHealth::dropLater(std::shared_ptr<CSMARTAttribute> reader) {
  if (reader) Dispatch::global([reader = std::move(reader)] {});
}

std::string DiskHealth::temperature() const {
  return temperatureText(reader_ ? reader_->GetTemperature() : 0);
}

std::string DiskHealth::powerOnHours() const {
  return groupedNumber(reader_ ? reader_->GetPowerOnHour() : 0);
}

std::string DiskHealth::powerCycles() const {
  return groupedNumber(reader_ ? reader_->GetPowerCycleCount() : 0);
}

}  // namespace brisko
