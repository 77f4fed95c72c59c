#include "VersionCheck.h"

#include "CommUti.h"
#include "PropertyList.h"
#include "Resources.h"
#include "SystemLog.h"
#include "WebRequest.h"
#include "ZKLinkUrl.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

namespace brisko {
namespace {

constexpr const char* kBuildKey = "VersionCheck";
constexpr const char* kVersionKey = "Version";

/// A number, or a text's leading digits; 0 for what is neither.
std::int64_t integerOf(const PropertyList& value) {
  if (!value.isString()) return value.integer();
  const std::string& text = value.string();
  const std::size_t begin = std::min(text.find_first_not_of(" \t\n"), text.size());
  std::int64_t number = 0;
  std::from_chars(text.data() + begin, text.data() + text.size(), number);
  return number;
}

/// The notes under "1" to "n", where n is how many keys are left beside the two named ones.
std::vector<std::string> notesOf(PropertyList remote) {
  remote.set(kBuildKey, {});
  remote.set(kVersionKey, {});
  std::vector<std::string> notes;
  for (std::size_t number = 1; number <= remote.dictionary().size(); ++number) {
    const PropertyList& note = remote[std::to_string(number)];
    if (!note.isString()) break;
    notes.push_back(note.string());
  }
  return notes;
}

VersionResult unread(std::string trouble) {
  SystemLog::line("Couldn't read version description: {}", trouble);
  VersionResult result = VersionCheck::whatIsNewVersionDiff({});
  result.trouble = std::move(trouble);
  return result;
}

}  // namespace

std::string VersionResult::titleText() const {
  return fmt::format("Brisko {} has been released.", version);
}

std::string VersionResult::versionText() const {
  return fmt::format("New features of Version {}:", version);
}

std::string VersionResult::noteText(std::size_t index) const {
  return fmt::format("{}.{}", index + 1, notes.at(index));
}

std::int64_t VersionCheck::localBuild() {
  return integerOf(Resources::settings(ZKLinkUrl::kTable)[kBuildKey]);
}

VersionResult VersionCheck::whatIsNewVersionDiff(const PropertyList& remote) {
  VersionResult result;
  result.version = remote[kVersionKey].string();
  if (integerOf(remote[kBuildKey]) <= localBuild()) return result;
  result.state = VersionResult::State::newVersion;
  result.notes = notesOf(remote);
  return result;
}

VersionResult VersionCheck::getVersionChange(const std::function<bool()>& stop) {
  if (!CommUti::isCanBeUseNetWork(stop)) {
    VersionResult result;
    result.state = VersionResult::State::noNetwork;
    return result;
  }
  const auto address = ZKLinkUrl::GetUrl("IniURL");
  if (!address) return unread("its address is not known");
  std::string description;
  const WebRequest::Answer answer =
      WebRequest(*address).stopWhen(stop).get([&](std::string_view bytes) {
        if (description.size() + bytes.size() > kLargestDescription) return false;
        description += bytes;
        return true;
      });
  if (!answer.failure.empty()) return unread(answer.failure);
  if (answer.status != 200) return unread(fmt::format("the server answered {}", answer.status));
  const PropertyList remote = PropertyList::parse(description, *address);
  if (!remote.isDictionary()) return unread("it is no property-list dictionary");
  return whatIsNewVersionDiff(remote);
}

}  // namespace brisko
