#include "AtaSmart.h"

#include "SystemLog.h"

#include <string_view>

namespace brisko {
namespace {

constexpr std::size_t kFirstRecord = 2;  // after the revision number
constexpr std::size_t kRecordSize = 12;
constexpr std::uint32_t kFeatureBit = 32;

std::uint16_t wordAt(const SmartSector& identify, std::size_t word) {
  return static_cast<std::uint16_t>(identify[2 * word] | identify[2 * word + 1] << 8);
}

// A pair of words counts only when the upper bits of its second say 0 and 1.
int bitZeroOf(const SmartSector& identify, std::size_t word, std::size_t validity) {
  if (wordAt(identify, validity) >> 14 != 1) return -1;
  return wordAt(identify, word) & 1;
}

std::uint8_t byteOf(const AtaSmartAttribute& attribute, char place) {
  switch (place) {
    case 'r':
      return attribute.reserved;
    case 'v':
      return attribute.current;
    case 'w':
      return attribute.worst;
    default:
      return place >= '0' && place <= '5' ? attribute.raw[static_cast<std::size_t>(place - '0')]
                                          : std::uint8_t{0};
  }
}

}  // namespace

AtaSmartAttribute ataSmartAttribute(const SmartSector& data, std::size_t index) {
  const std::uint8_t* record = data.data() + kFirstRecord + index * kRecordSize;
  AtaSmartAttribute attribute;
  attribute.id = record[0];
  attribute.flags = static_cast<std::uint16_t>(record[1] | record[2] << 8);
  attribute.current = record[3];
  attribute.worst = record[4];
  for (std::size_t i = 0; i < attribute.raw.size(); ++i)
    attribute.raw[i] = record[5 + i];
  attribute.reserved = record[11];
  return attribute;
}

int ataSmartSupport(const SmartSector& identify) {
  return bitZeroOf(identify, 82, 83);
}

int ataIsSmartEnabled(const SmartSector& identify) {
  return bitZeroOf(identify, 85, 87);
}

bool is_smart_capable(const SmartNode& object) {
  if (object.hasSmartCapable) return true;
  return object.isATABlockStorageDevice && (object.ataFeatures & kFeatureBit) != 0;
}

std::uint64_t ata_get_attr_raw_value(const AtaSmartAttribute& attribute) {
  static constexpr std::string_view kByteOrder = "543210";
  std::uint64_t value = 0;
  for (const char place : kByteOrder)
    value = (value << 8U) + byteOf(attribute, place);
  return value;
}

RawFormat get_default_raw_format(std::uint8_t id) {
  switch (id) {
    case 3:  // spin-up time
      return RawFormat::raw16Average;
    case 5:    // reallocated sectors
    case 196:  // reallocation events
      return RawFormat::raw16Second;
    case 9:    // power-on hours
    case 240:  // head flying hours
      return RawFormat::raw24;
    case 190:
    case 194:
      return RawFormat::temperature;
    default:
      return RawFormat::plain;
  }
}

std::uint32_t ata_format_attr_raw_value(const AtaSmartAttribute& attribute) {
  const std::uint64_t raw = ata_get_attr_raw_value(attribute);
  // The first text is as it is: it never carried the value.
  SystemLog::write("rawvalue is = lld%");
  SystemLog::line("attr id = {}", attribute.id);
  switch (get_default_raw_format(attribute.id)) {
    case RawFormat::raw16Second:
    case RawFormat::raw16Average:
      return static_cast<std::uint32_t>(raw & 0xFFFFU);
    case RawFormat::raw24:
    case RawFormat::raw24Second:
      return static_cast<std::uint32_t>(raw & 0xFFFFFFU);
    case RawFormat::temperature:
      return static_cast<std::uint32_t>(static_cast<std::int32_t>(static_cast<std::int8_t>(raw)));
    case RawFormat::plain:
      break;
  }
  return static_cast<std::uint32_t>(raw);
}

}  // namespace brisko
