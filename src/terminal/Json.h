#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// Keys stay in the order they were written in.
using Json = nlohmann::ordered_json;

/// `bytes` as UTF-8: each byte that belongs to no character becomes U+FFFD.
std::string replacedUtf8(std::string_view bytes);
std::string base64(std::string_view bytes);

/// Sets `key` to the path and, when the path is not UTF-8, `key` + "Bytes" to its bytes in base64.
void setPath(Json& object, const char* key, std::string_view path);
/// The same for an array of paths; with one that is not UTF-8 the second array holds all of them.
void setPaths(Json& object, const char* key, const std::vector<std::string>& paths);

/// ISO 8601 in UTC; `seconds` since 1970.
std::string isoDate(std::int64_t seconds);

/// The document as it goes to standard output.
std::string documentText(const Json& document);

}  // namespace brisko
