#pragma once

#include "TemporaryFolder.h"

#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <sys/types.h>

struct sd_bus;
struct sd_bus_message;

namespace brisko::test {

/// A message bus of the test's own, with a login manager and a screen saver on it that give out
/// real locks: the login manager's is a pipe that closes when nobody holds it any more, the screen
/// saver's goes with the caller's connection.
class MockSession {
 public:
  /// Whether this machine has what it takes.
  static bool isPossible();

  /// Both services, or a bus with nobody on it.
  explicit MockSession(bool hasServices = true);
  ~MockSession();
  MockSession(const MockSession&) = delete;
  MockSession& operator=(const MockSession&) = delete;

  const std::string& address() const { return address_; }

  /// Locks of the login manager that somebody holds now.
  int locks();
  /// The same of the screen saver.
  int savers();
  /// Waits up to five seconds until so many are held.
  bool holds(int locks, int savers);
  /// Each call with its texts: "Inhibit idle Brisko …".
  std::vector<std::string> calls();

 private:
  static int handle(sd_bus_message* message, void* self, void* error);
  int answer(sd_bus_message* message);
  int answerInhibit(sd_bus_message* message);
  void serve();

  TemporaryFolder folder_;
  std::string address_;
  pid_t daemon_ = -1;
  sd_bus* bus_ = nullptr;
  std::thread thread_;
  std::mutex mutex_;
  bool isOver_ = false;
  std::vector<int> pipes_;                  ///< reading ends
  std::map<unsigned, std::string> savers_;  ///< cookie to caller
  std::vector<std::string> calls_;
};

}  // namespace brisko::test
