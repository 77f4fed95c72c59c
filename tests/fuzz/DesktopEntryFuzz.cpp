#include "DesktopEntry.h"
#include "Utf8.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

// Whatever a file says, what comes out is text that a window can show.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  const auto entry = brisko::parseDesktopEntry(text, "de_AT.UTF-8@euro");
  brisko::programOf(brisko::execWords(entry ? entry->exec : text));
  if (!entry) return 0;
  if (entry->name.empty()) std::abort();
  for (std::string_view rest = entry->name; !rest.empty();) {
    const std::size_t length = brisko::utf8SequenceLength(rest);
    if (length == 0 || static_cast<unsigned char>(rest.front()) < 0x20) std::abort();
    rest.remove_prefix(length);
  }
  return 0;
}
