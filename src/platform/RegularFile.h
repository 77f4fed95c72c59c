#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace brisko {

/// The content of the regular file at `path`. Nothing, with errno's value in `error`, when it
/// cannot be read, is no regular file (EINVAL) or is larger than `maximum` bytes (EFBIG). Never
/// waits for a FIFO or a device, because none is opened.
std::optional<std::string> readFile(const std::string& path, std::size_t maximum, int& error);

/// Writes `bytes` over the content of the file at `path`, keeping its inode; made with mode 0600
/// when missing. Not atomic. A link or anything but a regular file is refused. 0, or errno's value.
int writeFileInPlace(const std::string& path, const std::string& bytes);

/// Replaces the file at `path` by one with `bytes` in one step, with mode 0600. 0, or errno's
/// value.
int replaceFile(const std::string& path, const std::string& bytes);

}  // namespace brisko
