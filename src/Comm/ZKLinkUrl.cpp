#include "ZKLinkUrl.h"

#include "Host.h"
#include "Resources.h"

namespace brisko {

std::optional<std::string> ZKLinkUrl::GetUrl(std::string_view key) {
  const PropertyList languages =
      Host::current().preferences->value(Preferences::kApplicationDomain, "AppleLanguages");
  const PropertyList table = Resources::settings(kTable);
  for (const std::string& code : {languages[std::size_t{0}].string(), std::string("en")}) {
    const PropertyList& address = table[code][key];
    // An empty address stands only where there is no other to fall back to.
    if (address.isString() && (!address.string().empty() || code == "en")) return address.string();
  }
  return std::nullopt;
}

}  // namespace brisko
