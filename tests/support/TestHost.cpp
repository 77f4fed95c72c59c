#include "TestHost.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace brisko::test {

Environment::Environment(const char* name, const char* value) : name_(name) {
  const char* before = std::getenv(name);
  wasSet_ = before != nullptr;
  if (wasSet_) before_ = before;
  if (value != nullptr) {
    setenv(name, value, 1);
  } else {
    unsetenv(name);
  }
}

Environment::~Environment() {
  if (wasSet_) {
    setenv(name_.c_str(), before_.c_str(), 1);
  } else {
    unsetenv(name_.c_str());
  }
}

TestHost::TestHost(const std::string& root) {
  const std::string home = root + "/Users/anna";
  const auto set = [this](const char* name, const char* value) {
    environment_.push_back(std::make_unique<Environment>(name, value));
  };
  set("USER", "anna");
  set("HOME", home.c_str());
  for (const char* name : {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME",
                           "BRISKO_RESOURCES"}) {
    set(name, nullptr);
  }
  auto made = makeHost({root});
  auto version = std::make_unique<FakeSystemVersion>();
  version_ = version.get();
  made->systemVersion = std::move(version);
  before_ = Host::install(std::move(made));
}

TestHost::~TestHost() {
  Host::install(std::move(before_));
}

bool TestHost::logged(const std::string& line) const {
  const auto lines = log();
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

}  // namespace brisko::test
