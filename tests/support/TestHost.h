#pragma once

#include "Host.h"
#include "LogCapture.h"
#include "SystemLog.h"

#include <memory>
#include <string>
#include <vector>

namespace brisko::test {

/// A version that the test sets.
struct FakeSystemVersion : SystemVersion {
  Selectors selectors{0x1090, 10, 13, 0};
  long error = 0;
  long read(Selectors& into) override {
    into = selectors;
    return error;
  }
};

/// A variable of the environment with another value (or none) while the object lives.
class Environment {
 public:
  Environment(const char* name, const char* value);
  ~Environment();
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  std::string name_;
  bool wasSet_ = false;
  std::string before_;
};

/// The system's own host below `root`, for the user "anna" with no base folders of her own, with a
/// version that can be set, as the current host while it lives; and the system log caught.
class TestHost {
 public:
  explicit TestHost(const std::string& root = "/nowhere");
  ~TestHost();
  TestHost(const TestHost&) = delete;
  TestHost& operator=(const TestHost&) = delete;

  Host& host() { return Host::current(); }
  FakeSystemVersion& version() { return *version_; }

  std::vector<std::string> log() const { return log_.lines(); }
  bool logged(const std::string& line) const;

 private:
  std::vector<std::unique_ptr<Environment>> environment_;
  std::unique_ptr<Host> before_;
  FakeSystemVersion* version_ = nullptr;
  LogCapture log_;
};

}  // namespace brisko::test
