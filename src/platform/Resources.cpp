#include "Resources.h"

#include "EmbeddedResources.h"
#include "RegularFile.h"
#include "SystemLog.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

namespace brisko {
namespace {

constexpr std::size_t kMaximumSize = std::size_t{64} << 20U;

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

// What the user has changed is the user's whatever root is looked at, so the host's folders are not
// asked. Empty when there is no place for it.
std::string userFolder() {
  const std::string data = environment("XDG_DATA_HOME");
  if (data.starts_with('/')) return data + "/brisko";
  const std::string home = environment("HOME");
  return home.starts_with('/') ? home + "/.local/share/brisko" : "";
}

// Keeps look-ups inside the resources folders.
bool isPlainName(std::string_view name) {
  if (name.empty() || name.front() == '/' || name.find('\0') != std::string_view::npos)
    return false;
  return fmt::format("/{}/", name).find("/../") == std::string::npos;
}

std::string_view withoutSuffix(std::string_view name, std::string_view suffix) {
  return name.ends_with(suffix) ? name.substr(0, name.size() - suffix.size()) : name;
}

std::optional<std::string> contentIn(const std::string& folder, std::string_view name) {
  if (folder.empty()) return std::nullopt;
  int error = 0;
  const std::string path = folder + "/" + std::string(name);
  auto content = readFile(path, kMaximumSize, error);
  if (!content && error != ENOENT && error != ENOTDIR) {
    SystemLog::line("Cannot read resource {}: {}", path, std::strerror(error));
  }
  return content;
}

PropertyList overlaid(PropertyList table, const PropertyList& changes) {
  if (changes.isNull()) return table;
  if (!table.isDictionary() || !changes.isDictionary()) return changes;
  for (const auto& [key, value] : changes.dictionary())
    table.set(key, overlaid(table[key], value));
  return table;
}

PropertyList changesOf(const PropertyList& table, const PropertyList& own) {
  if (!table.isDictionary() || !own.isDictionary()) return table;
  PropertyList changes = PropertyList::Dictionary{};
  for (const auto& [key, value] : table.dictionary()) {
    if (value != own[key]) changes.set(key, changesOf(value, own[key]));
  }
  return changes;
}

}  // namespace

std::optional<std::string> Resources::find(std::string_view name) {
  if (!isPlainName(name)) return std::nullopt;
  for (const std::string& folder : {environment("BRISKO_RESOURCES"), userFolder()}) {
    if (auto content = contentIn(folder, name)) return content;
  }
  const auto own = builtIn(name);
  return own ? std::optional<std::string>(*own) : std::nullopt;
}

std::optional<std::string_view> Resources::builtIn(std::string_view name) {
  for (const EmbeddedResource* entry = embeddedResources(); entry->name != nullptr; ++entry) {
    if (name == entry->name) {
      return std::string_view(entry->begin, static_cast<std::size_t>(entry->end - entry->begin));
    }
  }
  return std::nullopt;
}

PropertyList Resources::table(std::string_view name) {
  const auto content = find(name);
  return content ? PropertyList::parse(*content, name) : PropertyList();
}

PropertyList Resources::settings(std::string_view name) {
  if (!isPlainName(name)) return {};
  const auto parsed = [name](const auto& content) {
    return content ? PropertyList::parse(*content, name) : PropertyList();
  };
  const auto given = contentIn(environment("BRISKO_RESOURCES"), name);
  if (given) return parsed(given);
  return overlaid(parsed(builtIn(name)), parsed(contentIn(userFolder(), name)));
}

bool Resources::writeTable(std::string_view name, const PropertyList& table) {
  const std::string given = environment("BRISKO_RESOURCES");
  const std::string folder = given.empty() ? userFolder() : given;
  if (!isPlainName(name) || folder.empty()) {
    SystemLog::line("Cannot write resource {}: there is no place for it", name);
    return false;
  }
  const std::filesystem::path path = folder + "/" + std::string(name);
  std::error_code error;
  std::filesystem::create_directories(path.parent_path(), error);
  if (!given.empty()) return table.writeInPlace(path.string());
  const auto own = builtIn(name);
  return changesOf(table, own ? PropertyList::parse(*own, name) : PropertyList())
      .writeInPlace(path.string());
}

std::optional<std::string> Resources::image(std::string_view imageName) {
  for (const std::string_view suffix : {".svg", ".png", "@2x"}) {
    imageName = withoutSuffix(imageName, suffix);
  }
  return find("images/" + std::string(imageName) + ".svg");
}

}  // namespace brisko
