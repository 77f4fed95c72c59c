#include "crcFold.h"

#if BRISKO_CRC_FOLDS

#include <immintrin.h>

// Folding: a block of 128 bits is a polynomial; moved D bits towards the end of the message it is
// that polynomial times x^D, of which only the remainder counts. Its two halves, multiplied without
// carries by the remainders of x^(D+64) and x^D, give 128 bits that are added to the block found
// there. In reflected order a product stands one bit too low, so the constants are those of one
// power less. The remainder of what is left at the end is taken by table.

namespace brisko {
namespace {

// x^power modulo the polynomial, reflected.
constexpr std::uint64_t remainderOfPower(unsigned power) {
  std::uint64_t value = std::uint64_t{1} << 63;
  for (; power > 0; --power)
    value = (value >> 1) ^ ((value & 1) != 0 ? kCrcPolynomial : 0);
  return value;
}

struct FoldConstants {
  std::uint64_t first;  // for the half that comes first in memory
  std::uint64_t second;
};

constexpr FoldConstants foldBy(unsigned bits) {
  return {remainderOfPower(bits + 64 - 1), remainderOfPower(bits - 1)};
}

constexpr FoldConstants kBy128 = foldBy(128);
constexpr FoldConstants kBy256 = foldBy(256);
constexpr FoldConstants kBy384 = foldBy(384);
constexpr FoldConstants kBy512 = foldBy(512);
constexpr FoldConstants kBy1024 = foldBy(1024);
constexpr FoldConstants kBy1536 = foldBy(1536);
constexpr FoldConstants kBy2048 = foldBy(2048);
constexpr FoldConstants kBy768 = foldBy(768);

__attribute__((target("pclmul,sse4.1"), always_inline)) inline __m128i fold128(
    __m128i block, FoldConstants constants, __m128i onto) {
  const __m128i k = _mm_set_epi64x(static_cast<long long>(constants.second),
                                   static_cast<long long>(constants.first));
  return _mm_xor_si128(
      _mm_xor_si128(_mm_clmulepi64_si128(block, k, 0x00), _mm_clmulepi64_si128(block, k, 0x11)),
      onto);
}

inline __m128i load128(const unsigned char* bytes) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

// Folds single blocks from bytes + taken on, onto `sum`.
__attribute__((target("pclmul,sse4.1"), always_inline)) inline std::size_t foldTail(
    __m128i sum, const unsigned char* bytes, std::size_t taken, std::size_t length,
    unsigned char* rest) {
  for (; length - taken >= 16; taken += 16)
    sum = fold128(sum, kBy128, load128(bytes + taken));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(rest), sum);
  return taken;
}

__attribute__((target("avx2,pclmul,vpclmulqdq"), always_inline)) inline __m256i fold256(
    __m256i block, FoldConstants constants, __m256i onto) {
  const __m256i k = _mm256_set_epi64x(
      static_cast<long long>(constants.second), static_cast<long long>(constants.first),
      static_cast<long long>(constants.second), static_cast<long long>(constants.first));
  return _mm256_xor_si256(_mm256_xor_si256(_mm256_clmulepi64_epi128(block, k, 0x00),
                                           _mm256_clmulepi64_epi128(block, k, 0x11)),
                          onto);
}

__attribute__((target("avx2"), always_inline)) inline __m256i load256(const unsigned char* bytes) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
}

__attribute__((target("avx512f,pclmul,vpclmulqdq"), always_inline)) inline __m512i fold512(
    __m512i block, FoldConstants constants, __m512i onto) {
  const __m512i k = _mm512_set4_epi64(
      static_cast<long long>(constants.second), static_cast<long long>(constants.first),
      static_cast<long long>(constants.second), static_cast<long long>(constants.first));
  return _mm512_ternarylogic_epi64(_mm512_clmulepi64_epi128(block, k, 0x00),
                                   _mm512_clmulepi64_epi128(block, k, 0x11), onto, 0x96);
}

__attribute__((target("avx512f"), always_inline)) inline __m512i load512(
    const unsigned char* bytes) {
  return _mm512_loadu_si512(bytes);
}

template <int index>
__attribute__((target("avx512f"), always_inline)) inline __m128i lane(__m512i block) {
  return _mm512_maskz_extracti32x4_epi32(0xF, block, index);
}

}  // namespace

bool crcHasFold128() {
  return __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.1");
}

__attribute__((target("pclmul,sse4.1"))) std::size_t crcFold128(std::uint64_t running,
                                                                const unsigned char* bytes,
                                                                std::size_t length,
                                                                unsigned char* rest) {
  if (length < 16) return 0;
  const __m128i start = _mm_set_epi64x(0, static_cast<long long>(running));
  __m128i a = _mm_xor_si128(load128(bytes), start);
  if (length < 64) return foldTail(a, bytes, 16, length, rest);
  __m128i b = load128(bytes + 16);
  __m128i c = load128(bytes + 32);
  __m128i d = load128(bytes + 48);
  std::size_t taken = 64;
  for (; length - taken >= 64; taken += 64) {
    a = fold128(a, kBy512, load128(bytes + taken));
    b = fold128(b, kBy512, load128(bytes + taken + 16));
    c = fold128(c, kBy512, load128(bytes + taken + 32));
    d = fold128(d, kBy512, load128(bytes + taken + 48));
  }
  d = fold128(a, kBy384, fold128(b, kBy256, fold128(c, kBy128, d)));
  return foldTail(d, bytes, taken, length, rest);
}

bool crcHasFold256() {
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("vpclmulqdq") && crcHasFold128();
}

__attribute__((target("avx2,pclmul,vpclmulqdq"))) std::size_t crcFold256(std::uint64_t running,
                                                                         const unsigned char* bytes,
                                                                         std::size_t length,
                                                                         unsigned char* rest) {
  if (length < 256) return crcFold128(running, bytes, length, rest);
  const __m256i start = _mm256_set_epi64x(0, 0, 0, static_cast<long long>(running));
  __m256i a = _mm256_xor_si256(load256(bytes), start);
  __m256i b = load256(bytes + 32);
  __m256i c = load256(bytes + 64);
  __m256i d = load256(bytes + 96);
  std::size_t taken = 128;
  for (; length - taken >= 128; taken += 128) {
    a = fold256(a, kBy1024, load256(bytes + taken));
    b = fold256(b, kBy1024, load256(bytes + taken + 32));
    c = fold256(c, kBy1024, load256(bytes + taken + 64));
    d = fold256(d, kBy1024, load256(bytes + taken + 96));
  }
  d = fold256(a, kBy768, fold256(b, kBy512, fold256(c, kBy256, d)));
  const __m128i sum = fold128(_mm256_castsi256_si128(d), kBy128, _mm256_extracti128_si256(d, 1));
  return foldTail(sum, bytes, taken, length, rest);
}

bool crcHasFold512() {
  return __builtin_cpu_supports("avx512f") && crcHasFold256();
}

__attribute__((target("avx512f,avx2,pclmul,vpclmulqdq"))) std::size_t crcFold512(
    std::uint64_t running, const unsigned char* bytes, std::size_t length, unsigned char* rest) {
  if (length < 512) return crcFold256(running, bytes, length, rest);
  __m512i a = _mm512_xor_si512(
      load512(bytes), _mm512_set_epi64(0, 0, 0, 0, 0, 0, 0, static_cast<long long>(running)));
  __m512i b = load512(bytes + 64);
  __m512i c = load512(bytes + 128);
  __m512i d = load512(bytes + 192);
  std::size_t taken = 256;
  for (; length - taken >= 256; taken += 256) {
    a = fold512(a, kBy2048, load512(bytes + taken));
    b = fold512(b, kBy2048, load512(bytes + taken + 64));
    c = fold512(c, kBy2048, load512(bytes + taken + 128));
    d = fold512(d, kBy2048, load512(bytes + taken + 192));
  }
  d = fold512(a, kBy1536, fold512(b, kBy1024, fold512(c, kBy512, d)));
  __m128i sum = lane<3>(d);
  sum = fold128(lane<2>(d), kBy128, sum);
  sum = fold128(lane<1>(d), kBy256, sum);
  sum = fold128(lane<0>(d), kBy384, sum);
  return foldTail(sum, bytes, taken, length, rest);
}

}  // namespace brisko

#endif
