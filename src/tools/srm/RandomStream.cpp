#include "RandomStream.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <sys/random.h>

namespace brisko::srm {

bool systemRandom(std::span<std::byte> bytes) {
  while (!bytes.empty()) {
    const ssize_t got = ::getrandom(bytes.data(), bytes.size(), 0);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(got));
  }
  return true;
}

void RandomStream::Free::operator()(evp_cipher_ctx_st* context) const {
  EVP_CIPHER_CTX_free(context);
}

RandomStream::RandomStream() {
  // The system's configuration of the library is of no use here, and takes longer than a small
  // file.
  OPENSSL_init_crypto(OPENSSL_INIT_NO_LOAD_CONFIG, nullptr);
  std::array<std::byte, 32 + 16> secret;  // the key, and where the counter begins
  if (!systemRandom(secret)) return;
  std::unique_ptr<evp_cipher_ctx_st, Free> context(EVP_CIPHER_CTX_new());
  const auto* key = reinterpret_cast<const unsigned char*>(secret.data());
  if (context &&
      EVP_EncryptInit_ex(context.get(), EVP_aes_256_ctr(), nullptr, key, key + 32) == 1) {
    context_ = std::move(context);
  }
  OPENSSL_cleanse(secret.data(), secret.size());
}

RandomStream::~RandomStream() = default;

bool RandomStream::fill(std::span<std::byte> bytes) {
  constexpr std::size_t kMost = std::size_t{1} << 30;  // the library counts in int
  while (!bytes.empty()) {
    const std::size_t part = std::min(bytes.size(), kMost);
    auto* at = reinterpret_cast<unsigned char*>(bytes.data());
    int written = 0;
    if (!context_ ||
        EVP_EncryptUpdate(context_.get(), at, &written, at, static_cast<int>(part)) != 1 ||
        written != static_cast<int>(part)) {
      return false;
    }
    bytes = bytes.subspan(part);
  }
  return true;
}

}  // namespace brisko::srm
