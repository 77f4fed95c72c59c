#pragma once

#include "PowerAssertion.h"

#include <mutex>
#include <set>
#include <vector>

namespace brisko::test {

/// Holds what is asserted, or refuses with `refusal`.
struct FakePowerAssertion : PowerAssertion {
  std::string refusal;
  std::set<Identifier> held;
  std::vector<std::string> names;
  int activities = 0;
  mutable std::mutex mutex;

  Creation create(std::string_view, int level, const std::string& name) override {
    const std::lock_guard lock(mutex);
    if (!refusal.empty()) return {kNoIdentifier, refusal};
    names.push_back(name);
    const auto identifier = static_cast<Identifier>(names.size());
    if (level == kLevelOn) held.insert(identifier);
    return {identifier, ""};
  }
  bool release(Identifier identifier) override {
    const std::lock_guard lock(mutex);
    return held.erase(identifier) > 0;
  }
  bool updateSystemActivity() override {
    const std::lock_guard lock(mutex);
    ++activities;
    return true;
  }
};

}  // namespace brisko::test
