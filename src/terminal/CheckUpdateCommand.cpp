#include "CheckUpdateCommand.h"

#include "Dispatch.h"
#include "Interruption.h"
#include "Json.h"
#include "Output.h"
#include "SystemLog.h"
#include "VersionCheck.h"
#include "ZKLinkUrl.h"

#include <fmt/format.h>

#include <memory>
#include <optional>

namespace brisko {
namespace {

using State = VersionResult::State;

/// What the check came to; nothing when it was interrupted.
std::optional<VersionResult> check() {
  const auto result = std::make_shared<std::optional<VersionResult>>();
  Dispatch::global([result] {
    VersionResult found = VersionCheck::getVersionChange(&Interruption::happened);
    Dispatch::mainAsync([result, found = std::move(found)] { *result = found; });
  });
  Dispatch::runUntil([&] { return result->has_value() || Interruption::happened(); });
  return Interruption::happened() ? std::nullopt : *result;
}

std::string document(const VersionResult& result) {
  Json json;
  json["state"] = result.state == State::noNetwork  ? "noNetwork"
                  : result.state == State::noUpdate ? "noUpdate"
                                                    : "newVersion";
  json["version"] = replacedUtf8(result.version);
  json["notes"] = Json::array();
  for (const std::string& note : result.notes) {
    json["notes"].push_back(replacedUtf8(note));
  }
  if (!result.trouble.empty()) json["trouble"] = result.trouble;
  return documentText(json);
}

std::string text(const VersionResult& result) {
  if (result.state == State::noNetwork) return {};
  if (result.state == State::noUpdate)
    return "No newer version than " BRISKO_VERSION " was found.\n";
  std::string lines = escapedForDisplay(result.titleText()) + "\n";
  if (!result.notes.empty()) lines += escapedForDisplay(result.versionText()) + "\n";
  for (std::size_t index = 0; index < result.notes.size(); ++index) {
    lines += "  " + escapedForDisplay(result.noteText(index)) + "\n";
  }
  if (const auto address = ZKLinkUrl::GetUrl("UpdateURL")) lines += *address + "\n";
  return lines;
}

}  // namespace

int CheckUpdateCommand::execute(const GlobalOptions& global) {
  const std::optional<VersionResult> result = check();
  if (!result) {
    writeError("interrupted while checking");
    return kInterrupted;
  }
  if (!global.json && result->state == State::noNetwork) {
    writeError("the network cannot be reached; whether there is a newer version is not known");
  } else if (!global.json && !result->trouble.empty()) {
    writeError(fmt::format("the version description could not be read: {}", result->trouble));
  }
  if (!writeOut(global.json ? document(*result) : text(*result))) return kNotDone;
  return result->state == State::noNetwork || !result->trouble.empty() ? kNotDone : kDone;
}

}  // namespace brisko
