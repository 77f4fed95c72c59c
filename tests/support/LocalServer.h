#pragma once

#include "FileDescriptor.h"

#include <string>
#include <thread>

namespace brisko::test {

/// A web server on this machine alone, at a free port.
class LocalServer {
 public:
  /// Gives each visitor `answer`, which is all of it: status line, headers, body. With an empty one
  /// it accepts and keeps silent until the visitor leaves.
  explicit LocalServer(std::string answer);
  ~LocalServer();
  LocalServer(const LocalServer&) = delete;
  LocalServer& operator=(const LocalServer&) = delete;

  std::string address() const { return "http://127.0.0.1:" + std::to_string(port_) + "/"; }

 private:
  void serve();

  FileDescriptor socket_;
  std::string answer_;
  int port_ = 0;
  std::thread thread_;
};

/// A whole answer of status 200 with `body`.
std::string answerWith(const std::string& body);

/// A settings table ("StringMessage.plist") whose links lead there.
std::string linkTable(const std::string& home, const std::string& ini);

}  // namespace brisko::test
