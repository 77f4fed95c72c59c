#include "LinuxPreferences.h"

#include "FileDescriptor.h"
#include "RegularFile.h"
#include "SystemLog.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace brisko {
namespace {

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

// A domain's name becomes a file's name.
bool isDomain(const std::string& name) {
  return !name.empty() && name.front() != '.' && name.size() <= 200 &&
         name.find('/') == std::string::npos && name.find('\0') == std::string::npos;
}

void addLanguage(PropertyList::Array& languages, std::string_view locale) {
  const std::string code(locale.substr(0, locale.find_first_of("_.@")));
  if (code.empty() || code == "C" || code == "POSIX") return;
  if (std::find(languages.begin(), languages.end(), PropertyList(code)) != languages.end()) return;
  languages.emplace_back(code);
}

}  // namespace

PropertyList languagesOfSession() {
  std::string locale;
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (locale.empty()) locale = environment(name);
  }
  PropertyList::Array languages;
  // LANGUAGE refines a locale; where the locale is "C" it is not asked, as in every translated
  // program.
  const bool isPlain = locale == "C" || locale == "POSIX" || locale.starts_with("C.");
  if (!isPlain) {
    const std::string list = environment("LANGUAGE");
    for (std::string_view rest = list; !rest.empty();) {
      const std::size_t end = std::min(rest.find(':'), rest.size());
      addLanguage(languages, rest.substr(0, end));
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  }
  addLanguage(languages, locale);
  if (languages.empty()) languages.emplace_back("en");
  return languages;
}

LinuxPreferences::LinuxPreferences(std::string folder) : folder_(std::move(folder)) {}

std::string LinuxPreferences::file(const std::string& domain) const {
  return folder_ + "/" + domain + ".plist";
}

PropertyList LinuxPreferences::currentDomain(const std::string& domain) const {
  if (!isDomain(domain)) return {};
  const auto changed = changes_.find(domain);
  if (changed == changes_.end()) return PropertyList::read(file(domain));
  if (changed->second.isReplaced) return changed->second.values;
  PropertyList current = PropertyList::read(file(domain));
  for (const auto& [key, value] : changed->second.values)
    current.set(key, value);
  return current;
}

PropertyList LinuxPreferences::persistentDomain(const std::string& domain) {
  std::lock_guard lock(mutex_);
  return currentDomain(domain);
}

PropertyList LinuxPreferences::value(const std::string& domain, const std::string& key) {
  PropertyList found = persistentDomain(domain)[key];
  if (found.isNull() && domain == kApplicationDomain) return value(kGlobalDomain, key);
  if (found.isNull() && domain == kGlobalDomain && key == "AppleLanguages") {
    return languagesOfSession();
  }
  return found;
}

void LinuxPreferences::setValue(const std::string& domain, const std::string& key,
                                PropertyList value) {
  std::lock_guard lock(mutex_);
  Changes& changes = changes_[domain];
  if (changes.isReplaced && value.isNull()) {
    changes.values.erase(key);
  } else {
    changes.values.insert_or_assign(key, std::move(value));
  }
}

void LinuxPreferences::setPersistentDomain(const std::string& domain, PropertyList dictionary) {
  std::lock_guard lock(mutex_);
  changes_[domain] = {true, dictionary.dictionary()};
}

// The file is replaced in one step, so that a reader finds the old or the new one; the lock keeps
// two writers from losing each other's keys.
bool LinuxPreferences::write(const std::string& domain) const {
  std::error_code made;
  std::filesystem::create_directories(folder_, made);
  const FileDescriptor lock(::open((folder_ + "/.lock").c_str(),
                                   O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
  if (lock) flock(lock.get(), LOCK_EX);
  const int error =
      isDomain(domain) && lock ? replaceFile(file(domain), currentDomain(domain).xml()) : ENOENT;
  if (error != 0) {
    SystemLog::line("Cannot write preferences of {}: {}", domain, std::strerror(error));
  }
  return error == 0;
}

bool LinuxPreferences::synchronize() {
  std::lock_guard lock(mutex_);
  bool written = true;
  for (auto change = changes_.begin(); change != changes_.end();) {
    if (write(change->first)) {
      change = changes_.erase(change);
    } else {
      written = false;
      ++change;
    }
  }
  return written;
}

}  // namespace brisko
