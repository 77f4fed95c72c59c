#include "LocalServer.h"

#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace brisko::test {

LocalServer::LocalServer(std::string answer)
    : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)), answer_(std::move(answer)) {
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  ::bind(socket_.get(), reinterpret_cast<sockaddr*>(&place), sizeof place);
  ::listen(socket_.get(), 4);
  socklen_t size = sizeof place;
  ::getsockname(socket_.get(), reinterpret_cast<sockaddr*>(&place), &size);
  port_ = ntohs(place.sin_port);
  thread_ = std::thread([this] { serve(); });
}

LocalServer::~LocalServer() {
  ::shutdown(socket_.get(), SHUT_RDWR);
  thread_.join();
}

void LocalServer::serve() {
  while (true) {
    const FileDescriptor visitor(::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!visitor) return;
    char request[4096];
    if (::read(visitor.get(), request, sizeof request) <= 0) continue;
    if (!answer_.empty()) {
      ::send(visitor.get(), answer_.data(), answer_.size(), MSG_NOSIGNAL);
      ::shutdown(visitor.get(), SHUT_WR);
    }
    while (::read(visitor.get(), request, sizeof request) > 0) {
    }
  }
}

std::string linkTable(const std::string& home, const std::string& ini) {
  return "<plist><dict><key>en</key><dict><key>HomeURL</key><string>" + home +
         "</string><key>IniURL</key><string>" + ini +
         "</string><key>UpdateURL</key><string>https://brisko.example/get</string>"
         "</dict></dict></plist>";
}

std::string answerWith(const std::string& body) {
  return "HTTP/1.0 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

}  // namespace brisko::test
