#pragma once

#include "SmartDevice.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace brisko {

/// One record of the ATA S.M.A.R.T. data sector, as the standard lays it out.
struct AtaSmartAttribute {
  std::uint8_t id = 0;  ///< 0 is an empty slot
  std::uint16_t flags = 0;
  std::uint8_t current = 0;  ///< normalised
  std::uint8_t worst = 0;
  std::array<std::uint8_t, 6> raw{};
  std::uint8_t reserved = 0;
};

inline constexpr std::size_t kAtaSmartAttributes = 30;

/// The record at `index`, below `kAtaSmartAttributes`.
AtaSmartAttribute ataSmartAttribute(const SmartSector& data, std::size_t index);

/// From the answer to IDENTIFY DEVICE: whether the drive has S.M.A.R.T. (1 or 0), and whether it is
/// on; -1 when the drive does not say.
int ataSmartSupport(const SmartSector& identify);
int ataIsSmartEnabled(const SmartSector& identify);

/// Whether an object of the device registry is one that can be asked.
bool is_smart_capable(const SmartNode& object);

/// The six raw bytes as one number, the first the lowest.
std::uint64_t ata_get_attr_raw_value(const AtaSmartAttribute& attribute);

/// How the raw value of an attribute is to be read.
enum class RawFormat : int {
  plain = 3,          ///< low 32 bits
  raw16Second = 9,    ///< low 16 bits
  raw16Average = 10,  ///< low 16 bits
  raw24 = 11,         ///< low 24 bits
  raw24Second = 12,   ///< low 24 bits
  temperature = 18,   ///< low byte, signed
};
RawFormat get_default_raw_format(std::uint8_t id);

/// The raw value reduced to what its format reports; a negative temperature is sign-extended. Logs
/// the attribute's id.
std::uint32_t ata_format_attr_raw_value(const AtaSmartAttribute& attribute);

}  // namespace brisko
