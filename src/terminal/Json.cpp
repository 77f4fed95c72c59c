#include "Json.h"

#include "Utf8.h"

#include <algorithm>
#include <ctime>

namespace brisko {
namespace {

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = utf8SequenceLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace

std::string replacedUtf8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const std::size_t length = utf8SequenceLength(bytes);
    text += length == 0 ? std::string_view("\xEF\xBF\xBD") : bytes.substr(0, length);
    bytes.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return text;
}

std::string base64(std::string_view bytes) {
  static constexpr char kDigits[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
    std::uint32_t group = 0;
    for (std::size_t j = 0; j < 3; ++j) {
      group = group << 8U | (j < count ? static_cast<unsigned char>(bytes[i + j]) : 0U);
    }
    for (std::size_t digit = 0; digit < 4; ++digit) {
      text += digit <= count ? kDigits[group >> (18U - 6U * digit) & 63U] : '=';
    }
  }
  return text;
}

void setPath(Json& object, const char* key, std::string_view path) {
  object[key] = replacedUtf8(path);
  if (!isUtf8(path)) object[std::string(key) + "Bytes"] = base64(path);
}

void setPaths(Json& object, const char* key, const std::vector<std::string>& paths) {
  Json texts = Json::array();
  Json bytes = Json::array();
  bool isText = true;
  for (const std::string& path : paths) {
    texts.push_back(replacedUtf8(path));
    bytes.push_back(base64(path));
    isText = isText && isUtf8(path);
  }
  object[key] = std::move(texts);
  if (!isText) object[std::string(key) + "Bytes"] = std::move(bytes);
}

std::string isoDate(std::int64_t seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  std::tm parts{};
  if (gmtime_r(&time, &parts) == nullptr) return "";
  char text[40];
  const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
  return {text, length};
}

std::string documentText(const Json& document) {
  return document.dump(2) + "\n";
}

}  // namespace brisko
