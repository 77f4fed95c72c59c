#include "InstanceGuard.h"

#include "Host.h"
#include "SystemLog.h"

#include <QCryptographicHash>
#include <QFile>
#include <QLocalSocket>

#include <chrono>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr char kRaise[] = "raise\n";
constexpr char kDone[] = "done\n";
constexpr int kAnswerTime = 2000;  // milliseconds

// A folder in which nobody but this user can put a socket.
bool isOwnFolder(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

std::string socketFolder() {
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  if (runtime != nullptr && *runtime == '/' && isOwnFolder(runtime)) return runtime;
  const std::string temporary = Host::current().folders->temporary();
  return isOwnFolder(temporary) ? temporary : std::string();
}

// Whether the process at the other end runs as this user.
bool isOwnPeer(const QLocalSocket& socket) {
  ucred peer{};
  socklen_t length = sizeof peer;
  const int descriptor = static_cast<int>(socket.socketDescriptor());
  return ::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 &&
         peer.uid == ::geteuid();
}

}  // namespace

InstanceGuard::InstanceGuard(const std::string& root) {
  const std::string folder = socketFolder();
  if (folder.empty()) return;
  const QByteArray hash =
      QCryptographicHash::hash(QByteArray::fromStdString(root), QCryptographicHash::Sha256).toHex();
  const std::string_view whose(hash.constData(), 16);
  socketPath_ = root.empty() ? fmt::format("{}/brisko.socket", folder)
                             : fmt::format("{}/brisko-{}.socket", folder, whose);
  connect(&server_, &QLocalServer::newConnection, this, &InstanceGuard::answer);
}

InstanceGuard::Role InstanceGuard::claim() {
  if (socketPath_.empty()) {
    // Without a folder of its own it cannot be found by a second program, nor find a first one.
    SystemLog::line("No folder for the instance socket");
    return Role::first;
  }
  // The lock, not the socket, says who is first: it goes with its process however that ends, and a
  // socket left behind by a crash can be told from one in use.
  const std::string lockPath = socketPath_ + ".lock";
  lock_.reset(::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!lock_ || ::flock(lock_.get(), LOCK_EX | LOCK_NB) != 0) return askFirst();
  const QString name = QFile::decodeName(QByteArray::fromStdString(socketPath_));
  QLocalServer::removeServer(name);
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  if (!server_.listen(name)) {
    SystemLog::line("Instance socket {}: {}", socketPath_, server_.errorString().toStdString());
  }
  return Role::first;
}

InstanceGuard::Role InstanceGuard::askFirst() const {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kAnswerTime);
  while (std::chrono::steady_clock::now() < end) {
    QLocalSocket socket;
    socket.connectToServer(QFile::decodeName(QByteArray::fromStdString(socketPath_)));
    if (socket.waitForConnected(100) && isOwnPeer(socket)) {
      socket.write(kRaise);
      socket.flush();
      if (socket.waitForReadyRead(kAnswerTime) && socket.readAll().startsWith(kDone)) {
        return Role::second;
      }
    }
    // The first one may hold the lock and not listen yet.
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return Role::failed;
}

void InstanceGuard::answer() {
  while (QLocalSocket* socket = server_.nextPendingConnection()) {
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    if (!isOwnPeer(*socket)) {
      SystemLog::line("Instance socket: refused another user's process");
      socket->abort();
      continue;
    }
    connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
      if (!socket->canReadLine()) return;
      const bool isRaise = socket->readLine(64) == kRaise;
      if (isRaise) {
        socket->write(kDone);
        socket->flush();
        Q_EMIT raiseRequested();
      }
      socket->disconnectFromServer();
    });
  }
}

}  // namespace brisko
