#include "crc.h"

#include "crcFold.h"

#include <array>
#include <cstring>

namespace brisko {
namespace {

using Table = std::array<std::uint64_t, 256>;

constexpr Table byteTable() {
  Table table{};
  for (std::uint64_t n = 0; n < 256; ++n) {
    std::uint64_t value = n;
    for (int bit = 0; bit < 8; ++bit)
      value = (value >> 1) ^ ((value & 1) != 0 ? kCrcPolynomial : 0);
    table[n] = value;
  }
  return table;
}

// kSlices[k][n] is the CRC of byte n followed by k zero bytes, so that eight bytes are taken in one
// step of independent look-ups.
constexpr std::array<Table, 8> slicedTables() {
  std::array<Table, 8> tables{};
  tables[0] = byteTable();
  for (std::size_t k = 1; k < tables.size(); ++k) {
    for (std::size_t n = 0; n < 256; ++n) {
      const std::uint64_t shorter = tables[k - 1][n];
      tables[k][n] = tables[0][shorter & 0xFF] ^ (shorter >> 8);
    }
  }
  return tables;
}

constexpr std::array<Table, 8> kSlices = slicedTables();
static_assert(kSlices[0][1] == 0x7AD870C830358979);

bool always() {
  return true;
}

std::uint64_t updateByBytes(std::uint64_t running, const unsigned char* bytes, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) {
    running = kSlices[0][(running ^ bytes[i]) & 0xFF] ^ (running >> 8);
  }
  return running;
}

std::uint64_t updateBySlices(std::uint64_t running, const unsigned char* bytes,
                             std::size_t length) {
  for (; length >= 8; bytes += 8, length -= 8) {
    std::uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    word ^= running;
    running = kSlices[7][word & 0xFF] ^ kSlices[6][(word >> 8) & 0xFF] ^
              kSlices[5][(word >> 16) & 0xFF] ^ kSlices[4][(word >> 24) & 0xFF] ^
              kSlices[3][(word >> 32) & 0xFF] ^ kSlices[2][(word >> 40) & 0xFF] ^
              kSlices[1][(word >> 48) & 0xFF] ^ kSlices[0][word >> 56];
  }
  return updateByBytes(running, bytes, length);
}

#if BRISKO_CRC_FOLDS
// Folding leaves 16 bytes with the CRC of all that was folded, and a tail too short to fold.
template <std::size_t (*fold)(std::uint64_t, const unsigned char*, std::size_t, unsigned char*)>
std::uint64_t updateByFolding(std::uint64_t running, const unsigned char* bytes,
                              std::size_t length) {
  alignas(16) unsigned char rest[16];
  const std::size_t folded = fold(running, bytes, length, rest);
  if (folded == 0) return updateBySlices(running, bytes, length);
  running = updateBySlices(0, rest, sizeof rest);
  return updateBySlices(running, bytes + folded, length - folded);
}
#endif

constexpr CrcKernel kKernels[] = {
#if BRISKO_CRC_FOLDS
    {"512-bit carry-less multiply", crcHasFold512, updateByFolding<crcFold512>},
    {"256-bit carry-less multiply", crcHasFold256, updateByFolding<crcFold256>},
    {"128-bit carry-less multiply", crcHasFold128, updateByFolding<crcFold128>},
#endif
    {"sliced tables", always, updateBySlices},
    {"byte table", always, updateByBytes},
    {nullptr, nullptr, nullptr},
};

const CrcKernel& chosenKernel() {
  static const CrcKernel& chosen = [&]() -> const CrcKernel& {
    const CrcKernel* kernel = kKernels;
    while (!kernel->isSupported())
      ++kernel;
    return *kernel;
  }();
  return chosen;
}

}  // namespace

const CrcKernel* crcKernels() {
  return kKernels;
}

std::uint64_t crc::update(std::uint64_t running, const void* buffer, std::size_t length) {
  return chosenKernel().update(running, static_cast<const unsigned char*>(buffer), length);
}

std::uint64_t crc::crc64(const void* buffer, std::uint32_t length) {
  return crc64Buffer(buffer, length, true, 0);
}

std::uint64_t crc::crc64Buffer(const void* buffer, std::uint32_t length, bool isHead,
                               std::uint64_t running) {
  if (buffer == nullptr) return 0;
  return update(isHead ? kStart : running, buffer, length);
}

std::uint64_t crc64(const void* buffer, std::uint32_t length) {
  return crc::crc64(buffer, length);
}

std::uint64_t crc64Buffer(const void* buffer, std::uint32_t length, bool isHead,
                          std::uint64_t running) {
  return crc::crc64Buffer(buffer, length, isHead, running);
}

}  // namespace brisko
