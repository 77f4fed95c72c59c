#include "FileURL.h"

#include <fmt/format.h>

#include <cctype>
#include <charconv>
#include <string_view>

namespace brisko {
namespace {

constexpr std::string_view kScheme = "file://";

}  // namespace

std::string fileURL(const std::string& path) {
  std::string url(kScheme);
  for (const char character : path) {
    const auto byte = static_cast<unsigned char>(character);
    const bool isPlain = (byte < 0x80 && std::isalnum(byte) != 0) ||
                         std::string_view("-._~/").find(character) != std::string_view::npos;
    url += isPlain ? std::string(1, character) : fmt::format("%{:02X}", byte);
  }
  return url;
}

std::string pathOfFileURL(const std::string& url) {
  if (!url.starts_with(kScheme)) return {};
  std::string path;
  for (std::size_t i = kScheme.size(); i < url.size(); ++i) {
    unsigned byte = 0;
    if (url[i] == '%' && i + 2 < url.size() &&
        std::from_chars(&url[i + 1], &url[i + 3], byte, 16).ptr == &url[i + 3]) {
      path += static_cast<char>(byte);
      i += 2;
    } else {
      path += url[i];
    }
  }
  return path;
}

}  // namespace brisko
