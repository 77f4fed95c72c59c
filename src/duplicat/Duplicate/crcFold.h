#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__x86_64__)
#define BRISKO_CRC_FOLDS 1
#else
#define BRISKO_CRC_FOLDS 0
#endif

namespace brisko {

/// The polynomial, reflected: bit i is the coefficient of x^(63 - i).
inline constexpr std::uint64_t kCrcPolynomial = 0x95AC9329AC4BC9B5;

#if BRISKO_CRC_FOLDS

// Each takes as many bytes as it can in whole steps and returns how many, 0 when there are too few
// to fold at all. `rest` gets 16 bytes whose CRC from a start value of 0 is the CRC of what was
// taken from the start value `running`.

bool crcHasFold512();
std::size_t crcFold512(std::uint64_t running, const unsigned char* bytes, std::size_t length,
                       unsigned char* rest);
bool crcHasFold256();
std::size_t crcFold256(std::uint64_t running, const unsigned char* bytes, std::size_t length,
                       unsigned char* rest);
bool crcHasFold128();
std::size_t crcFold128(std::uint64_t running, const unsigned char* bytes, std::size_t length,
                       unsigned char* rest);

#endif

}  // namespace brisko
