#pragma once

#include "SmartDevice.h"

#include <cerrno>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace brisko::test {

/// What a made drive answers, and how often it was turned on. The test changes it while it is open.
struct FakeSmartDrive {
  bool nvme = false;
  int openError = 0;
  int enableError = 0;
  int dataError = 0;
  int thresholdsError = 0;
  int healthError = 0;
  SmartSector data{};
  SmartHealth health;
  int enabled = 0;
};

/// A device registry that the test writes down: nodes by path, each with the path of the one above
/// it, and the drives that answer at them.
struct FakeSmartDevice : SmartDevice {
  struct Entry {
    SmartNode node;
    std::string parentPath;
    std::shared_ptr<FakeSmartDrive> drive;
  };
  std::vector<Entry> entries;

  /// A capable drive called `name` at the top of the registry.
  std::shared_ptr<FakeSmartDrive> add(const std::string& name) {
    Entry entry;
    entry.node.path = "/registry/" + name;
    entry.node.name = name;
    entry.node.hasSmartCapable = true;
    entry.drive = std::make_shared<FakeSmartDrive>();
    entries.push_back(entry);
    return entry.drive;
  }

  std::optional<SmartNode> nodeWithName(const std::string& name) override {
    for (const Entry& entry : entries)
      if (entry.node.name == name) return entry.node;
    return std::nullopt;
  }
  std::optional<SmartNode> nodeAtPath(const std::string& path) override {
    const Entry* entry = find(path);
    if (entry == nullptr && path.starts_with("/dev/")) return nodeWithName(path.substr(5));
    return entry == nullptr ? std::nullopt : std::optional(entry->node);
  }
  std::optional<SmartNode> parent(const SmartNode& node) override {
    const Entry* entry = find(node.path);
    return entry == nullptr ? std::nullopt : nodeAtPath(entry->parentPath);
  }
  std::unique_ptr<SmartInterface> open(const SmartNode& node, int& error) override {
    const Entry* entry = find(node.path);
    error = entry == nullptr || !entry->drive ? ENODEV : entry->drive->openError;
    return error != 0 ? nullptr : std::make_unique<Opened>(entry->drive);
  }

 private:
  struct Opened : SmartInterface {
    explicit Opened(std::shared_ptr<FakeSmartDrive> of) : drive(std::move(of)) {}

    bool hasHealthLog() const override { return drive->nvme; }
    int enable() override {
      ++drive->enabled;
      return drive->enableError;
    }
    int readData(SmartSector& sector) override {
      const int error = drive->nvme ? ENOTSUP : drive->dataError;
      sector = error == 0 ? drive->data : SmartSector{};
      return error;
    }
    int readThresholds(SmartSector& sector) override {
      sector = {};
      return drive->nvme ? ENOTSUP : drive->thresholdsError;
    }
    int readHealth(SmartHealth& into) override {
      const int error = drive->nvme ? drive->healthError : ENOTSUP;
      into = error == 0 ? drive->health : SmartHealth{};
      return error;
    }

    std::shared_ptr<FakeSmartDrive> drive;
  };

  const Entry* find(const std::string& path) const {
    for (const Entry& entry : entries)
      if (entry.node.path == path) return &entry;
    return nullptr;
  }
};

}  // namespace brisko::test
