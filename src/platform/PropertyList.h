#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace brisko {

/// A property-list value: boolean, integer, real, text, date, data, array or dictionary, or null
/// for what is not there. Reading goes through XML and binary lists alike.
///
/// Look-ups never fail: a missing key, an index out of range or a value of another type gives null,
/// 0, false or "". That is the rule for tables and tool output, where absent means empty.
class PropertyList {
 public:
  using Array = std::vector<PropertyList>;
  using Dictionary = std::map<std::string, PropertyList, std::less<>>;
  struct Data {
    std::string bytes;
    friend bool operator==(const Data&, const Data&) = default;
  };
  struct Date {
    double seconds = 0;  ///< since 2001-01-01 00:00 UTC
    friend bool operator==(const Date&, const Date&) = default;
  };

  PropertyList();
  ~PropertyList();
  PropertyList(const PropertyList& other);
  PropertyList(PropertyList&& other) noexcept;
  PropertyList& operator=(const PropertyList& other);
  PropertyList& operator=(PropertyList&& other) noexcept;
  PropertyList(bool value) : value_(value) {}
  PropertyList(int value) : value_(std::int64_t{value}) {}
  PropertyList(std::int64_t value) : value_(value) {}
  PropertyList(std::uint64_t value) : value_(value) {}
  PropertyList(double value) : value_(value) {}
  PropertyList(const char* value) : value_(std::string(value)) {}
  PropertyList(std::string value) : value_(std::move(value)) {}
  PropertyList(Data value) : value_(std::move(value)) {}
  PropertyList(Date value) : value_(value) {}
  PropertyList(Array value) : value_(std::move(value)) {}
  PropertyList(Dictionary value) : value_(std::move(value)) {}

  /// Reads an XML or binary property list. A file that is missing, unreadable, broken, deeper than
  /// 512 levels, larger than 64 MiB or of more than 2,000,000 values (shared ones counted at each
  /// place) gives null; all but a missing file also give one log line. An archive's reference
  /// number reads as a dictionary {"CF$UID": number}.
  static PropertyList read(const std::string& path);

  /// The same from memory; `name` is what the log line calls it.
  static PropertyList parse(std::string_view bytes, std::string_view name);

  /// As XML text. Null values are left out; a date is cut to whole seconds.
  std::string xml() const;
  /// The one element of a value that is no container; empty for a container and for null.
  std::string scalarXml() const;

  /// Writes as XML over the file's own content (same inode, not atomically; made with mode 0600
  /// when missing; a link at the path is refused). False, and one log line, on failure.
  bool writeInPlace(const std::string& path) const;

  bool isNull() const { return std::holds_alternative<std::monostate>(value_); }
  bool isBool() const { return std::holds_alternative<bool>(value_); }
  bool isNumber() const;
  bool isString() const { return std::holds_alternative<std::string>(value_); }
  bool isArray() const { return std::holds_alternative<Array>(value_); }
  bool isDictionary() const { return std::holds_alternative<Dictionary>(value_); }

  bool boolean() const;                   ///< a number counts as true when it is not 0
  std::int64_t integer() const;           ///< a real is truncated; out of range gives 0
  std::uint64_t unsignedInteger() const;  ///< a negative number gives 0
  double real() const;
  const std::string& string() const;
  const std::string& dataBytes() const;
  double date() const;
  const Array& array() const;
  const Dictionary& dictionary() const;

  /// The value under `key` of a dictionary, or the element at `index` of an array; else null.
  const PropertyList& operator[](std::string_view key) const;
  const PropertyList& operator[](const char* key) const { return (*this)[std::string_view(key)]; }
  const PropertyList& operator[](std::size_t index) const;

  /// Makes this a dictionary if it is none, and sets or (with null) takes out a key.
  void set(std::string key, PropertyList value);

  friend bool operator==(const PropertyList&, const PropertyList&) = default;

 private:
  std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double, std::string, Data, Date,
               Array, Dictionary>
      value_;
};

}  // namespace brisko
