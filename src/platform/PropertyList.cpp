#include "PropertyList.h"

#include <cmath>
#include <limits>

namespace brisko {
namespace {

const PropertyList& nothing() {
  static const PropertyList null;
  return null;
}

// The value of this type, or an empty one.
template <typename T, typename Variant>
const T& valueOr(const Variant& variant, const T& empty) {
  const T* value = std::get_if<T>(&variant);
  return value != nullptr ? *value : empty;
}

}  // namespace

// Here, because a variant of this many types is a lot of code at each place that passes one on.
PropertyList::PropertyList() = default;
PropertyList::~PropertyList() = default;
PropertyList::PropertyList(const PropertyList& other) = default;
PropertyList::PropertyList(PropertyList&& other) noexcept = default;
PropertyList& PropertyList::operator=(const PropertyList& other) = default;
PropertyList& PropertyList::operator=(PropertyList&& other) noexcept = default;

bool PropertyList::isNumber() const {
  return std::holds_alternative<std::int64_t>(value_) ||
         std::holds_alternative<std::uint64_t>(value_) || std::holds_alternative<double>(value_);
}

bool PropertyList::boolean() const {
  if (isNumber()) return real() != 0;
  return valueOr<bool>(value_, false);
}

std::int64_t PropertyList::integer() const {
  if (const auto* number = std::get_if<std::uint64_t>(&value_)) {
    return *number <= INT64_MAX ? static_cast<std::int64_t>(*number) : 0;
  }
  if (const auto* number = std::get_if<double>(&value_)) {
    constexpr double kLimit = 9223372036854775808.0;  // 2^63
    return *number >= -kLimit && *number < kLimit ? static_cast<std::int64_t>(*number) : 0;
  }
  if (isBool()) return boolean() ? 1 : 0;
  return valueOr<std::int64_t>(value_, 0);
}

std::uint64_t PropertyList::unsignedInteger() const {
  if (const auto* number = std::get_if<std::uint64_t>(&value_)) return *number;
  if (const auto* number = std::get_if<double>(&value_)) {
    constexpr double kLimit = 18446744073709551616.0;  // 2^64
    return *number >= 0 && *number < kLimit ? static_cast<std::uint64_t>(*number) : 0;
  }
  const std::int64_t number = integer();
  return number > 0 ? static_cast<std::uint64_t>(number) : 0;
}

double PropertyList::real() const {
  if (const auto* number = std::get_if<double>(&value_)) return *number;
  if (const auto* number = std::get_if<std::uint64_t>(&value_)) return static_cast<double>(*number);
  return static_cast<double>(integer());
}

const std::string& PropertyList::string() const {
  static const std::string empty;
  return valueOr<std::string>(value_, empty);
}

const std::string& PropertyList::dataBytes() const {
  static const Data empty;
  return valueOr<Data>(value_, empty).bytes;
}

double PropertyList::date() const {
  return valueOr<Date>(value_, Date{}).seconds;
}

const PropertyList::Array& PropertyList::array() const {
  static const Array empty;
  return valueOr<Array>(value_, empty);
}

const PropertyList::Dictionary& PropertyList::dictionary() const {
  static const Dictionary empty;
  return valueOr<Dictionary>(value_, empty);
}

const PropertyList& PropertyList::operator[](std::string_view key) const {
  const Dictionary& values = dictionary();
  const auto found = values.find(key);
  return found == values.end() ? nothing() : found->second;
}

const PropertyList& PropertyList::operator[](std::size_t index) const {
  const Array& values = array();
  return index < values.size() ? values[index] : nothing();
}

void PropertyList::set(std::string key, PropertyList value) {
  if (!isDictionary()) value_ = Dictionary();
  Dictionary& values = std::get<Dictionary>(value_);
  if (value.isNull()) {
    values.erase(key);
  } else {
    values.insert_or_assign(std::move(key), std::move(value));
  }
}

}  // namespace brisko
