#pragma once

#include "FileIdentity.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brisko::helper {

/// What the program and its removal helper say to each other, over one stream socket that is the
/// helper's standard input and output.
///
/// A message is its length (four bytes, little endian, without themselves), a type byte and what
/// the type says. The helper begins with `hello`; then each request gets one reply, the removal of
/// packages after any number of `progress`. Whoever reads anything else ends the conversation.

using Token = std::array<std::byte, 32>;

inline constexpr std::size_t kMaximumMessage = 64 * 1024;
inline constexpr std::size_t kMaximumOutput = 128;

enum class Type : char {
  hello = 'H',           ///< helper: the token that every request must carry
  ping = 'P',            ///< program: is the right still there?
  remove = 'R',          ///< program: remove one path
  removePackages = 'A',  ///< program: remove one package with exactly these others
  progress = 'G',        ///< helper: how far that is
  done = 'D',            ///< helper: it was done; with output it was tried
  denied = 'N',          ///< helper: it was refused; the output says why
};

struct Message {
  Type type{};
  Token token{};                      ///< hello, ping, remove, removePackages
  std::optional<FileIdentity> shown;  ///< remove; device, inode and kind only
  std::string path;                   ///< remove
  std::string output;                 ///< done, denied
  std::uint64_t freedBytes = 0;       ///< done
  std::vector<std::string>
      packages;                ///< removePackages: at least one; names that packages can have
  std::uint16_t permille = 0;  ///< progress: 0 to 1000
};

/// The message as bytes, its length first; empty when it would be too long or holds what is no name
/// of a package.
std::string encode(const Message& message);

/// From the bytes after the length. Nothing for anything that `encode` would not have made.
std::optional<Message> decode(std::string_view bytes);

/// Writes or reads one whole message. False at the end of the stream, on an error and for what is
/// no message. `send` raises no signal.
bool send(int socket, const Message& message);
std::optional<Message> receive(int socket);

/// Compares in a time that does not depend on the bytes.
bool isSame(const Token& a, const Token& b);

}  // namespace brisko::helper
