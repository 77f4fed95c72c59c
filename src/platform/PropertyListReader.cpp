#include "PropertyList.h"
#include "PropertyListGuard.h"
#include "RegularFile.h"
#include "SystemLog.h"

#include <plist/plist.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace brisko {
namespace {

struct NodeDeleter {
  void operator()(void* node) const { plist_free(node); }
};
struct MemoryDeleter {
  void operator()(void* memory) const { std::free(memory); }
};
using Node = std::unique_ptr<void, NodeDeleter>;
template <typename T>
using Memory = std::unique_ptr<T, MemoryDeleter>;

// The library keeps negative and large unsigned numbers as the same 64 bits and tells them apart
// only when it writes them.
PropertyList integer(plist_t node) {
  std::uint64_t bits = 0;
  plist_get_uint_val(node, &bits);
  if (bits <= INT64_MAX) return static_cast<std::int64_t>(bits);
  char* xml = nullptr;
  std::uint32_t length = 0;
  plist_to_xml(node, &xml, &length);
  const Memory<char> owned(xml);
  const bool isNegative = xml != nullptr && std::strstr(xml, "<integer>-") != nullptr;
  if (isNegative) return static_cast<std::int64_t>(bits);
  return bits;
}

PropertyList text(plist_t node) {
  std::uint64_t length = 0;
  const char* bytes = plist_get_string_ptr(node, &length);
  return bytes == nullptr ? std::string() : std::string(bytes, length);
}

PropertyList data(plist_t node) {
  std::uint64_t length = 0;
  const char* bytes = plist_get_data_ptr(node, &length);
  return PropertyList::Data{bytes == nullptr ? std::string() : std::string(bytes, length)};
}

PropertyList date(plist_t node) {
  std::int32_t seconds = 0;
  std::int32_t microseconds = 0;
  plist_get_date_val(node, &seconds, &microseconds);
  return PropertyList::Date{seconds + microseconds / 1e6};
}

PropertyList value(plist_t node);

PropertyList array(plist_t node) {
  PropertyList::Array values;
  values.reserve(plist_array_get_size(node));
  plist_array_iter iterator = nullptr;
  plist_array_new_iter(node, &iterator);
  const Memory<void> owned(iterator);
  for (;;) {
    plist_t item = nullptr;
    plist_array_next_item(node, iterator, &item);
    if (item == nullptr) return values;
    values.push_back(value(item));
  }
}

PropertyList dictionary(plist_t node) {
  PropertyList::Dictionary values;
  plist_dict_iter iterator = nullptr;
  plist_dict_new_iter(node, &iterator);
  const Memory<void> owned(iterator);
  for (;;) {
    char* key = nullptr;
    plist_t item = nullptr;
    plist_dict_next_item(node, iterator, &key, &item);
    const Memory<char> ownedKey(key);
    if (item == nullptr) return values;
    if (key != nullptr) values.insert_or_assign(key, value(item));
  }
}

PropertyList value(plist_t node) {
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
      std::uint8_t flag = 0;
      plist_get_bool_val(node, &flag);
      return flag != 0;
    }
    case PLIST_UINT:
      return integer(node);
    case PLIST_REAL: {
      double number = 0;
      plist_get_real_val(node, &number);
      return number;
    }
    case PLIST_STRING:
      return text(node);
    case PLIST_DATA:
      return data(node);
    case PLIST_DATE:
      return date(node);
    case PLIST_ARRAY:
      return array(node);
    case PLIST_DICT:
      return dictionary(node);
    case PLIST_UID: {
      // As XML lists write it.
      std::uint64_t number = 0;
      plist_get_uid_val(node, &number);
      return PropertyList::Dictionary{{"CF$UID", static_cast<std::int64_t>(number)}};
    }
    default:
      return {};
  }
}

PropertyList refuse(std::string_view name, std::string_view why) {
  SystemLog::line("Cannot read property list {}: {}", name, why);
  return {};
}

}  // namespace

PropertyList PropertyList::read(const std::string& path) {
  int error = 0;
  const auto bytes = readFile(path, PropertyListBounds::kBytes, error);
  if (bytes) return parse(*bytes, path);
  if (error == ENOENT || error == ENOTDIR) return {};
  return refuse(path, std::strerror(error));
}

PropertyList PropertyList::parse(std::string_view bytes, std::string_view name) {
  if (bytes.size() > PropertyListBounds::kBytes) return refuse(name, "it is too large");
  const bool isBinary = isBinaryPropertyList(bytes);
  const auto fault = isBinary ? binaryPropertyListFault(bytes) : xmlPropertyListFault(bytes);
  if (fault) return refuse(name, *fault);
  // The library compares past the end of what it was given; a copy ends with a zero.
  const std::string copy(bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes);
  plist_t root = nullptr;
  if (isBinary) {
    plist_from_bin(copy.data(), static_cast<std::uint32_t>(copy.size()), &root);
  } else {
    plist_from_xml(copy.data(), static_cast<std::uint32_t>(copy.size()), &root);
  }
  const Node owned(root);
  if (root == nullptr) return refuse(name, "its content is broken");
  return value(root);
}

}  // namespace brisko
