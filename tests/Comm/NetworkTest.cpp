#include "CommUti.h"
#include "FileDescriptor.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace brisko {
namespace {

// Listens on this machine alone and gives its one visitor `answer`; with an empty one it keeps
// silent until the visitor leaves.
class Server {
 public:
  explicit Server(std::string answer)
      : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)), answer_(std::move(answer)) {
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::bind(socket_.get(), reinterpret_cast<sockaddr*>(&place), sizeof place);
    ::listen(socket_.get(), 1);
    socklen_t size = sizeof place;
    ::getsockname(socket_.get(), reinterpret_cast<sockaddr*>(&place), &size);
    port_ = ntohs(place.sin_port);
    thread_ = std::thread([this] { serve(); });
  }
  ~Server() {
    ::shutdown(socket_.get(), SHUT_RDWR);
    thread_.join();
  }

  std::string address() const { return "http://127.0.0.1:" + std::to_string(port_) + "/"; }

 private:
  void serve() {
    const FileDescriptor visitor(::accept(socket_.get(), nullptr, nullptr));
    char request[4096];
    if (::read(visitor.get(), request, sizeof request) <= 0) return;
    if (::send(visitor.get(), answer_.data(), answer_.size(), MSG_NOSIGNAL) < 0) return;
    while (answer_.empty() && ::read(visitor.get(), request, sizeof request) > 0) {
    }
  }

  FileDescriptor socket_;
  std::string answer_;
  int port_ = 0;
  std::thread thread_;
};

bool reaches(const std::string& home) {
  test::TemporaryFolder resources;
  resources.file("StringMessage.plist",
                 "<plist><dict><key>en</key><dict><key>HomeURL</key><string>" + home +
                     "</string></dict></dict></plist>");
  test::TestHost host;
  const test::Environment folder("BRISKO_RESOURCES", resources.path().c_str());
  return CommUti::isCanBeUseNetWork();
}

TEST(Network, IsThereWhenTheHomePageGivesAnyData) {
  const Server answering("HTTP/1.0 200 OK\r\nContent-Length: 2\r\n\r\nhi");
  EXPECT_TRUE(reaches(answering.address()));
  const Server empty("HTTP/1.0 200 OK\r\nContent-Length: 0\r\n\r\n");
  EXPECT_FALSE(reaches(empty.address()));
  EXPECT_FALSE(reaches("http://127.0.0.1:1/"));
  EXPECT_FALSE(reaches("file:///etc/hostname")) << "only the web counts";
}

TEST(Network, AServerThatSaysNothingIsGivenUpAfterFiveSeconds) {
  const Server silent("");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(reaches(silent.address()));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(4900));
}

}  // namespace
}  // namespace brisko
