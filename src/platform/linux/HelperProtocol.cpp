#include "HelperProtocol.h"

#include "DpkgDatabase.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <sys/socket.h>
#include <unistd.h>

namespace brisko::helper {
namespace {

constexpr std::size_t kLengthSize = 4;
constexpr std::uint64_t kWhole = 1000;  // of the progress

void putNumber(std::string& bytes, std::uint64_t number, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i)
    bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}

std::uint64_t numberIn(std::string_view bytes, std::size_t size) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < size; ++i) {
    number |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
  }
  return number;
}

// Takes what was asked for from the front of the bytes, and remembers when there was less.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

  std::string_view take(std::size_t size) {
    if (size > bytes_.size()) {
      complete_ = false;
      return {};
    }
    const std::string_view taken = bytes_.substr(0, size);
    bytes_.remove_prefix(size);
    return taken;
  }
  std::uint64_t number(std::size_t size) {
    const std::string_view taken = take(size);
    return complete_ ? numberIn(taken, size) : 0;
  }
  Token token() {
    Token token{};
    const std::string_view taken = take(token.size());
    if (complete_) std::memcpy(token.data(), taken.data(), token.size());
    return token;
  }
  std::string rest() { return std::string(take(bytes_.size())); }
  bool isComplete() const { return complete_ && bytes_.empty(); }

 private:
  std::string_view bytes_;
  bool complete_ = true;
};

// One name after the other, each ended by a NUL byte.
std::string packedNames(const std::vector<std::string>& names) {
  std::string packed;
  for (const std::string& name : names) {
    packed += name;
    packed += '\0';
  }
  return packed;
}

bool arePackageNames(const std::vector<std::string>& names) {
  return !names.empty() && std::all_of(names.begin(), names.end(), isPackageName);
}

std::vector<std::string> unpackedNames(std::string_view packed) {
  std::vector<std::string> names;
  while (!packed.empty()) {
    const std::size_t end = packed.find('\0');
    if (end == std::string_view::npos) return {};
    names.emplace_back(packed.substr(0, end));
    packed.remove_prefix(end + 1);
  }
  return names;
}

bool readAll(int socket, char* buffer, std::size_t size) {
  while (size > 0) {
    const ssize_t got = ::read(socket, buffer, size);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return false;
    buffer += got;
    size -= static_cast<std::size_t>(got);
  }
  return true;
}

ssize_t writeSome(int socket, const char* bytes, std::size_t size) {
  const ssize_t sent = ::send(socket, bytes, size, MSG_NOSIGNAL);
  return sent < 0 && errno == ENOTSOCK ? ::write(socket, bytes, size) : sent;
}

}  // namespace

std::string encode(const Message& message) {
  std::string body(1, static_cast<char>(message.type));
  const auto* token = reinterpret_cast<const char*>(message.token.data());
  switch (message.type) {
    case Type::hello:
    case Type::ping:
      body.append(token, message.token.size());
      break;
    case Type::remove:
      body.append(token, message.token.size());
      body += static_cast<char>(message.shown ? 1 : 0);
      putNumber(body, message.shown ? message.shown->device : 0, 8);
      putNumber(body, message.shown ? message.shown->inode : 0, 8);
      body += static_cast<char>(message.shown ? message.shown->kind : FileKind::unknown);
      body += message.path;
      break;
    case Type::removePackages:
      if (!arePackageNames(message.packages)) return {};
      body.append(token, message.token.size());
      body += packedNames(message.packages);
      break;
    case Type::progress:
      putNumber(body, std::min<std::uint64_t>(message.permille, kWhole), 2);
      break;
    case Type::done:
      putNumber(body, message.freedBytes, 8);
      body += message.output.substr(0, kMaximumOutput);
      break;
    case Type::denied:
      body += message.output.substr(0, kMaximumOutput);
      break;
  }
  if (body.size() > kMaximumMessage) return {};
  std::string bytes;
  putNumber(bytes, body.size(), kLengthSize);
  return bytes + body;
}

std::optional<Message> decode(std::string_view bytes) {
  Reader reader(bytes);
  Message message;
  message.type = static_cast<Type>(reader.number(1));
  switch (message.type) {
    case Type::hello:
    case Type::ping:
      message.token = reader.token();
      break;
    case Type::remove: {
      message.token = reader.token();
      const std::uint64_t hasIdentity = reader.number(1);
      FileIdentity shown;
      shown.device = reader.number(8);
      shown.inode = reader.number(8);
      const std::uint64_t kind = reader.number(1);
      if (hasIdentity > 1 || kind > static_cast<std::uint64_t>(FileKind::unknown)) {
        return std::nullopt;
      }
      shown.kind = static_cast<FileKind>(kind);
      if (hasIdentity == 1) {
        message.shown = shown;
      } else if (shown != FileIdentity{}) {
        return std::nullopt;
      }
      message.path = reader.rest();
      break;
    }
    case Type::removePackages:
      message.token = reader.token();
      message.packages = unpackedNames(reader.rest());
      if (!arePackageNames(message.packages)) return std::nullopt;
      break;
    case Type::progress:
      message.permille = static_cast<std::uint16_t>(reader.number(2));
      if (message.permille > kWhole) return std::nullopt;
      break;
    case Type::done:
      message.freedBytes = reader.number(8);
      message.output = reader.rest();
      break;
    case Type::denied:
      message.output = reader.rest();
      break;
    default:
      return std::nullopt;
  }
  if (!reader.isComplete() || message.output.size() > kMaximumOutput) return std::nullopt;
  return message;
}

bool send(int socket, const Message& message) {
  const std::string bytes = encode(message);
  if (bytes.empty()) return false;
  for (std::size_t sent = 0; sent < bytes.size();) {
    const ssize_t now = writeSome(socket, bytes.data() + sent, bytes.size() - sent);
    if (now < 0 && errno == EINTR) continue;
    if (now <= 0) return false;
    sent += static_cast<std::size_t>(now);
  }
  return true;
}

std::optional<Message> receive(int socket) {
  char length[kLengthSize];
  if (!readAll(socket, length, sizeof length)) return std::nullopt;
  const std::uint64_t size = numberIn({length, sizeof length}, kLengthSize);
  if (size == 0 || size > kMaximumMessage) return std::nullopt;
  std::string bytes(size, '\0');
  if (!readAll(socket, bytes.data(), bytes.size())) return std::nullopt;
  return decode(bytes);
}

bool isSame(const Token& a, const Token& b) {
  std::byte difference{};
  for (std::size_t i = 0; i < a.size(); ++i)
    difference |= a[i] ^ b[i];
  return difference == std::byte{};
}

}  // namespace brisko::helper
