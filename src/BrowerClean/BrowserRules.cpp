#include "BrowserRules.h"

#include "PropertyList.h"
#include "ProtectedPaths.h"
#include "Resources.h"
#include "SystemLog.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace brisko {
namespace {

using Kind = InstalledApplication::Kind;
using Strings = std::vector<std::string>;

constexpr const char* kBundleTable = "EraserHistory.plist";
constexpr const char* kDesktopTable = "EraserHistoryLinux.plist";

std::optional<BrowserFamily> familyNamed(std::string_view name) {
  if (name == "Google Chrome") return BrowserFamily::chrome;
  if (name == "Firefox") return BrowserFamily::firefox;
  if (name == "Opera") return BrowserFamily::opera;
  if (name == "Safari") return BrowserFamily::safari;
  return std::nullopt;
}

std::string replaced(std::string text, std::string_view what, const std::string& by) {
  const std::size_t at = text.find(what);
  return at == std::string::npos ? text : text.replace(at, what.size(), by);
}

/// Reads the table of desktop browsers; the first thing it does not understand ends it.
class TableReader {
 public:
  explicit TableReader(const PropertyList& table) : table_(table) {}

  std::vector<BrowserRule> read() {
    std::vector<BrowserRule> rules;
    if (!table_.isDictionary()) complain("it is missing or broken");
    for (const PropertyList& row : table_["browsers"].array())
      addBrowser(rules, row);
    if (complaint_.empty()) return rules;
    SystemLog::line("{}: {}; no browsers are known by it", kDesktopTable, complaint_);
    return {};
  }

 private:
  void addBrowser(std::vector<BrowserRule>& rules, const PropertyList& row) {
    for (const auto& [key, value] : row.dictionary()) {
      static constexpr const char* kKeys[] = {"key",    "machinery", "kinds", "desktopEntries",
                                              "native", "flatpak",   "snap"};
      if (std::find(std::begin(kKeys), std::end(kKeys), key) == std::end(kKeys)) {
        complain("unknown key " + key);
      }
    }
    const auto family = familyNamed(row["machinery"].string());
    if (!family) complain("unknown machinery " + row["machinery"].string());
    const Strings entries = strings(row["desktopEntries"]);
    static constexpr std::pair<const char*, Kind> kInstallations[] = {
        {"native", Kind::package}, {"flatpak", Kind::flatpak}, {"snap", Kind::snap}};
    for (const auto& [name, installation] : kInstallations) {
      const PropertyList& places = row[name];
      if (places.isNull()) continue;
      BrowserRule rule{row["key"].string(),
                       family.value_or(BrowserFamily::chrome),
                       entries,
                       installation,
                       {},
                       {}};
      if (rule.key.empty()) complain("a browser without a key");
      addKinds(rule, table_["kinds"][row["kinds"].string()], places);
      rules.push_back(std::move(rule));
    }
  }

  void addKinds(BrowserRule& rule, const PropertyList& kinds, const PropertyList& places) {
    if (kinds.dictionary().empty()) complain("no kinds for " + rule.key);
    for (const auto& [name, value] : kinds.dictionary()) {
      if (name == "locks") {
        rule.locks = placed(strings(value), places);
        continue;
      }
      KindRule kind;
      kind.name = name;
      for (const auto& [key, part] : value.dictionary()) {
        if (key == "locations") {
          kind.locations = placed(strings(part), places);
        } else if (key == "holds") {
          kind.holds = part.string();
        } else if (key == "files") {
          kind.files = strings(part);
        } else {
          complain("unknown key " + key);
        }
      }
      if (kind.locations.empty()) complain(name + " without a location");
      rule.kinds.push_back(std::move(kind));
    }
  }

  Strings strings(const PropertyList& list) {
    Strings all;
    for (const PropertyList& element : list.array())
      all.push_back(element.string());
    const bool hasGap =
        std::any_of(all.begin(), all.end(), [](const std::string& text) { return text.empty(); });
    if (all.empty() || hasGap) complain("an empty list, or an element that is no text");
    return all;
  }

  Strings placed(Strings templates, const PropertyList& places) {
    for (std::string& text : templates) {
      text = replaced(text, "${data}", places["data"].string());
      text = replaced(text, "${cache}", places["cache"].string());
      if (!text.starts_with("${") && !text.starts_with("/")) complain("no place in " + text);
    }
    return templates;
  }

  void complain(std::string what) {
    if (complaint_.empty()) complaint_ = std::move(what);
  }

  const PropertyList& table_;
  std::string complaint_;
};

}  // namespace

bool BrowserRule::hasDesktopEntry(std::string_view id) const {
  return std::any_of(desktopEntries.begin(), desktopEntries.end(),
                     [&](const std::string& pattern) { return matchesPattern(id, pattern); });
}

std::vector<BrowserRule> bundleBrowserRules() {
  const PropertyList table = Resources::table(kBundleTable);
  std::vector<BrowserRule> rules;
  if (!table.isDictionary()) {
    SystemLog::line("{}: it is missing or broken; no browsers are known by it", kBundleTable);
  }
  for (const char* key : {"Safari", "Google Chrome", "Firefox", "Opera"}) {
    BrowserRule rule;
    rule.key = key;
    rule.family = *familyNamed(key);
    for (const auto& [name, location] : table[key].dictionary()) {
      if (!location.string().empty()) rule.kinds.push_back({name, {location.string()}, "", {}});
    }
    rules.push_back(std::move(rule));
  }
  return rules;
}

std::vector<BrowserRule> desktopBrowserRules() {
  const PropertyList table = Resources::table(kDesktopTable);
  return TableReader(table).read();
}

}  // namespace brisko
