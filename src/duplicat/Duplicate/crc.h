#pragma once

#include <cstddef>
#include <cstdint>

namespace brisko {

/// The content digest: CRC-64 over Jones's polynomial 0xAD93D23594C935A9, reflected, start value
/// all ones, no final exclusive-or. Of "123456789" it is 0xCAA717168609F281.
///
/// Runs on the widest carry-less multiplication that the processor has, else on sliced tables; all
/// give the same values.
class crc {
 public:
  static constexpr std::uint64_t kStart = 0xFFFFFFFFFFFFFFFF;

  /// The CRC of `length` bytes. A null buffer gives 0, a length of 0 the start value.
  static std::uint64_t crc64(const void* buffer, std::uint32_t length);

  /// Continues a CRC over a further piece: from the start value when `isHead`, else from `running`.
  /// A null buffer gives 0, a length of 0 the value that it would have started from.
  static std::uint64_t crc64Buffer(const void* buffer, std::uint32_t length, bool isHead,
                                   std::uint64_t running);

  /// Continues `running` over any number of bytes: what the other two stand on.
  static std::uint64_t update(std::uint64_t running, const void* buffer, std::size_t length);
};

/// The same operations as free functions.
std::uint64_t crc64(const void* buffer, std::uint32_t length);
std::uint64_t crc64Buffer(const void* buffer, std::uint32_t length, bool isHead,
                          std::uint64_t running);

/// One way of computing the CRC, for choosing among them and for holding them against each other.
struct CrcKernel {
  const char* name;
  bool (*isSupported)();
  std::uint64_t (*update)(std::uint64_t running, const unsigned char* bytes, std::size_t length);
};

/// All kernels of this build, the fastest first; the plain table, which needs nothing, last. The
/// end has a null name.
const CrcKernel* crcKernels();

}  // namespace brisko
