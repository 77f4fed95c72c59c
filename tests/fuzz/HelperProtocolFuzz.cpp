#include "HelperProtocol.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

// Root reads this from a program that it does not trust: nothing is a message but what `encode`
// makes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  const auto message = brisko::helper::decode(text);
  if (message && std::string_view(brisko::helper::encode(*message)).substr(4) != text) std::abort();
  return 0;
}
