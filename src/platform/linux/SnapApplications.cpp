#include "SnapApplications.h"

#include "RegularFile.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include <sys/stat.h>

namespace brisko {
namespace {

constexpr std::size_t kMaximumFile = 1 << 20;

// Letters, digits and "-", with "_KEY" after it for a further instance; it is given to a command.
bool isSnapName(std::string_view name) {
  return !name.empty() && name.size() <= 64 && name.front() != '-' && name.front() != '_' &&
         std::all_of(name.begin(), name.end(), [](char c) {
           return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
         });
}

// The value of a key at the top level of a document in the snap's own simple style.
std::string valueIn(const std::string& text, const std::string& key) {
  const std::size_t found = ("\n" + text).find("\n" + key + ":");
  if (found == std::string::npos) return "";
  const std::size_t begin = found + key.size() + 1;
  std::string value = text.substr(begin, text.find('\n', begin) - begin);
  std::erase_if(value, [](char c) { return c == ' ' || c == '\'' || c == '"' || c == '\r'; });
  return value;
}

}  // namespace

std::string snapExports(const std::string& root) {
  return root + "/var/lib/snapd/desktop/applications";
}

std::optional<SnapFacts> snapFacts(const std::string& root, const std::string& name) {
  if (!isSnapName(name)) return std::nullopt;
  const std::string folder = root + "/snap/" + name;
  std::error_code error;
  const std::string revision = std::filesystem::read_symlink(folder + "/current", error);
  if (error || revision.empty() || revision.find('/') != std::string::npos) return std::nullopt;
  SnapFacts facts;
  int failure = 0;
  const auto text = readFile(folder + "/" + revision + "/meta/snap.yaml", kMaximumFile, failure);
  if (text) {
    facts.version = valueIn(*text, "version");
    facts.type = valueIn(*text, "type");
  }
  if (facts.type.empty()) facts.type = "app";
  struct stat status;
  const std::string image = root + "/var/lib/snapd/snaps/" + name + "_" + revision + ".snap";
  if (::stat(image.c_str(), &status) == 0) {
    facts.bytes = static_cast<std::uint64_t>(status.st_size);
    facts.date = status.st_mtime;
  }
  return facts;
}

UninstallPlan snapPlan(const std::string& root, const std::string& name) {
  UninstallPlan plan;
  plan.removes = {name};
  plan.command = "snap remove " + name;
  const auto facts = snapFacts(root, name);
  if (!facts) {
    plan.refusal = name + " is not installed any more.";
  } else if (facts->type != "app") {
    plan.refusal = "The system or other snaps need " + name + ".";
  } else {
    plan.bytes = facts->bytes;
  }
  return plan;
}

}  // namespace brisko
