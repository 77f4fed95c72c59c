#include "PropertyList.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

// What was read must be written and read back the same, and nothing may crash.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  const brisko::PropertyList list = brisko::PropertyList::parse(text, "fuzz");
  if (list.isNull()) return 0;
  const std::string written = list.xml();
  if (brisko::PropertyList::parse(written, "again").xml() != written) std::abort();
  return 0;
}
