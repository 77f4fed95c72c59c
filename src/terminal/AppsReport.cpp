#include "AppsReport.h"

#include "CommUti.h"
#include "HostApplications.h"
#include "InstalledApplications.h"
#include "Output.h"
#include "SystemLog.h"
#include "UninstallModel.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

namespace brisko {
namespace {

using Role = AMAppItem::Role;

constexpr std::size_t kSizeColumns = 11;
constexpr std::size_t kWidestName = 40;
constexpr std::size_t kWidestVersion = 32;

const char* roleName(Role role) {
  switch (role) {
    case Role::bundle:
      return "bundle";
    case Role::relatedFile:
      return "related";
    case Role::package:
      return "package";
    case Role::packageAlong:
      return "packageAlong";
  }
  return "";
}

const char* kindName(InstalledApplication::Kind kind) {
  switch (kind) {
    case InstalledApplication::Kind::package:
      return "package";
    case InstalledApplication::Kind::flatpak:
      return "flatpak";
    case InstalledApplication::Kind::snap:
      return "snap";
    case InstalledApplication::Kind::files:
      return "files";
  }
  return "";
}

Json itemJson(const AMAppItem& item) {
  Json one = Json::object();
  setPath(one, "name", item.name);
  setPath(one, "path", item.path);
  one["bundleID"] = replacedUtf8(item.bundleID);
  one["bundleVersion"] = replacedUtf8(item.bundleVersion);
  one["isSystemAppStr"] = item.isSystemAppStr;
  one["size"] = item.size;
  one["bytes"] = item.bytes;
  one["date"] = item.date == 0 ? Json(nullptr) : Json(isoDate(item.date));
  if (item.host) {
    one["kind"] = kindName(item.host->kind);
    if (!item.host->packageName.empty()) one["packageName"] = replacedUtf8(item.host->packageName);
  }
  return one;
}

Json entryJson(const RelatedFilesModel& model, const AppItem& entry) {
  Json one = itemJson(*entry);
  one["role"] = roleName(entry->role);
  one["selected"] = model.tick(entry) == RelatedFilesModel::Tick::all;
  if (!entry->sharedWith.empty()) one["sharedWith"] = replacedUtf8(entry->sharedWith);
  if (!entry->note.empty()) one["note"] = replacedUtf8(entry->note);
  return one;
}

Json entriesJson(const RelatedFilesModel& model) {
  Json items = Json::array();
  for (const ReviewGroup& group : model.allRelaltedFiles()) {
    for (const AppItem& entry : group.entries)
      items.push_back(entryJson(model, entry));
  }
  return items;
}

Json warningsJson(const RelatedFilesModel& model) {
  Json warnings = Json::array();
  for (const std::string& warning : model.warnings())
    warnings.push_back(replacedUtf8(warning));
  return warnings;
}

const char* box(const std::string& image) {
  return image == "sel" ? "[x]" : image == "unsel" ? "[ ]" : " - ";
}

std::string entryLine(const RelatedFilesModel& model, const AppItem& entry, const Style& style) {
  const bool isPackage = entry->role == Role::package || entry->role == Role::packageAlong;
  std::string line = fmt::format("  {} {}  {}{}", box(model.boxImage(entry)),
                                 rightAligned(entry->size, kSizeColumns),
                                 isPackage ? "package " : "", escapedForDisplay(entry->path));
  if (!entry->sharedWith.empty()) {
    line += style.warning(fmt::format("  (also fits {})", escapedForDisplay(entry->sharedWith)));
  }
  if (!entry->note.empty()) {
    line += style.dim(fmt::format("  ({})", escapedForDisplay(entry->note)));
  }
  return line + "\n";
}

bool isStillThere(const RelatedFilesModel& model, const AMAppItem& entry) {
  return entry.role == Role::package ? !model.hasRemovedPackage(entry)
                                     : FileIdentity::at(entry.path).has_value();
}

// Of the shown list; what is one package counts once.
std::uint64_t bytesOf(const AppItems& items) {
  std::set<std::string> packages;
  std::uint64_t sum = 0;
  for (const AppItem& item : items) {
    if (!item->host || packages.insert(packageKey(*item->host)).second) sum += item->bytes;
  }
  return sum;
}

std::string widened(const std::string& text, std::size_t width) {
  return leftAligned(text, width) + "  ";
}

}  // namespace

std::string AppsReport::list(const UninstallModel& model) const {
  if (isJson_) {
    Json items = Json::array();
    for (const AppItem& item : model.showListArr())
      items.push_back(itemJson(*item));
    return documentText(Json{{"items", std::move(items)}});
  }
  const Style style = Style::ofStandardOutput();
  std::size_t names = 4;
  std::size_t versions = 7;
  for (const AppItem& item : model.showListArr()) {
    names = std::max(names, std::min(escapedForDisplay(item->name).size(), kWidestName));
    versions = std::max(versions, std::min(item->bundleVersion.size(), kWidestVersion));
  }
  std::string text;
  if (!model.showListArr().empty()) {
    text = style.dim(widened("Name", names) + widened("Version", versions) +
                     rightAligned("Size", kSizeColumns) + "  Identifier") +
           "\n";
  }
  for (const AppItem& item : model.showListArr()) {
    text += style.bold(widened(escapedForDisplay(item->name), names)) +
            widened(escapedForDisplay(item->bundleVersion), versions) +
            style.accent(rightAligned(item->size, kSizeColumns)) + "  " +
            escapedForDisplay(item->bundleID.empty() ? item->path : item->bundleID) + "\n";
  }
  const char* noun = model.appsType() == 0 ? "application" : "item";
  return text + fmt::format("{}, {}.\n", counted(model.showListArr().size(), noun),
                            CommUti::longlongDiskSize(bytesOf(model.showListArr())));
}

std::string AppsReport::groupsText(const RelatedFilesModel& model) const {
  const Style style = Style::ofStandardOutput();
  std::string text;
  for (std::size_t i = 0; i < model.allRelaltedFiles().size(); ++i) {
    const ReviewGroup& group = model.allRelaltedFiles()[i];
    text += fmt::format("{}  {}\n", style.bold(escapedForDisplay(group.title)),
                        style.accent(model.sizeText(i)));
    for (const AppItem& entry : group.entries)
      text += entryLine(model, entry, style);
  }
  for (const std::string& warning : model.warnings())
    text += style.warning(escapedForDisplay(warning)) + "\n";
  return text;
}

std::string AppsReport::related(const RelatedFilesModel& model) const {
  if (!isJson_) return groupsText(model);
  return documentText(Json{{"items", entriesJson(model)}, {"warnings", warningsJson(model)}});
}

std::string AppsReport::plan(const RelatedFilesModel& model, bool isDryRun) const {
  if (isJson_) {
    if (!isDryRun) return "";
    Json document = {{"items", entriesJson(model)}, {"warnings", warningsJson(model)}};
    document["dryRun"] = true;
    std::vector<std::string> paths;
    for (const AppItem& entry : model.selectDeletePath())
      paths.push_back(entry->path);
    setPaths(document, "wouldRemove", paths);
    return documentText(document);
  }
  std::string text = groupsText(model);
  if (isDryRun) {
    text += fmt::format("Would remove {}, {}.\n", counted(model.selectedCount(), "item"),
                        CommUti::longlongDiskSize(model.selectedBytes()));
  }
  return text;
}

std::vector<UninstallFailure> AppsReport::stayed(const RelatedFilesModel& model,
                                                 const AppItems& entries) {
  std::vector<UninstallFailure> failures;
  std::set<std::string> known;
  for (const AppItem& entry : entries) {
    if (!isStillThere(model, *entry) || !known.insert(entry->path).second) continue;
    const auto told = std::find_if(model.failures().begin(), model.failures().end(),
                                   [&](const auto& one) { return one.path == entry->path; });
    // What an interrupt left out was not tried.
    if (told != model.failures().end()) failures.push_back(*told);
  }
  for (const ReviewGroup& group : model.allRelaltedFiles()) {
    if (!group.refusal.empty()) failures.push_back({group.entries.front()->path, group.refusal});
  }
  return failures;
}

std::string AppsReport::outcome(const RelatedFilesModel& model, const AppItems& entries) const {
  const std::vector<UninstallFailure> failures = stayed(model, entries);
  if (isJson_) {
    Json items = Json::array();
    for (const AppItem& entry : entries) {
      Json one = Json::object();
      setPath(one, "path", entry->path);
      one["size"] = entry->size;
      one["bytes"] = entry->bytes;
      one["removed"] = !isStillThere(model, *entry);
      items.push_back(std::move(one));
    }
    Json failed = Json::array();
    for (const UninstallFailure& failure : failures) {
      Json one = Json::object();
      setPath(one, "path", failure.path);
      one["reason"] = replacedUtf8(failure.reason);
      failed.push_back(std::move(one));
    }
    Json document = {{"items", std::move(items)},
                     {"freed", model.freedText()},
                     {"freedBytes", model.freedBytes()},
                     {"failed", std::move(failed)}};
    if (model.wasStopped()) document["interrupted"] = true;
    return documentText(document);
  }
  const Style style = Style::ofStandardOutput();
  std::set<std::string> removed;
  for (const AppItem& entry : entries) {
    if (!isStillThere(model, *entry)) removed.insert(entry->path);
  }
  std::string text = fmt::format("Removed {}, {}. The file system gave back {}.\n",
                                 counted(removed.size(), "item"), model.freedText(),
                                 CommUti::longlongDiskSize(model.freedBytes()));
  for (const UninstallFailure& failure : failures) {
    text += style.warning(fmt::format("Stays: {}: {}", escapedForDisplay(failure.path),
                                      escapedForDisplay(failure.reason))) +
            "\n";
  }
  return text;
}

}  // namespace brisko
