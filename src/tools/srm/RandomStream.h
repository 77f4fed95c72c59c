#pragma once

#include <cstddef>
#include <memory>
#include <span>

struct evp_cipher_ctx_st;

namespace brisko::srm {

/// Bytes that nobody can tell from chance: AES-256 in counter mode, keyed afresh by the system's
/// random numbers for each stream. Several GB/s where the processor knows AES.
class RandomStream {
 public:
  RandomStream();
  ~RandomStream();
  RandomStream(const RandomStream&) = delete;
  RandomStream& operator=(const RandomStream&) = delete;

  /// False when the system gave no key. Then nothing can be filled.
  bool isReady() const { return context_ != nullptr; }

  /// Fills `bytes`. False when the cipher failed; the bytes are then not to be used. What was in
  /// them before is mixed in, which makes them no less random and spares a pass over memory.
  bool fill(std::span<std::byte> bytes);

 private:
  struct Free {
    void operator()(evp_cipher_ctx_st* context) const;
  };
  std::unique_ptr<evp_cipher_ctx_st, Free> context_;
};

/// Fills a few bytes from the system's own random numbers. False when it has none.
bool systemRandom(std::span<std::byte> bytes);

}  // namespace brisko::srm
