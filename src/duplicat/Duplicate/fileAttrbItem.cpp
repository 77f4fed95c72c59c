#include "fileAttrbItem.h"

namespace brisko {

std::string lastPathComponent(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos || slash + 1 == path.size() ? path : path.substr(slash + 1);
}

std::string_view pathExtension(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  if (slash != std::string_view::npos) path.remove_prefix(slash + 1);
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  return path.substr(dot + 1);
}

}  // namespace brisko
