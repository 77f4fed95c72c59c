#include "JunkReport.h"

#include "CommUti.h"
#include "Host.h"
#include "Output.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <algorithm>

namespace brisko {
namespace {

constexpr std::size_t kSizeColumns = 11;
constexpr std::size_t kTitleColumns = 18;

const char* box(const std::string& image) {
  if (image == "sel") return "[x]";
  if (image == "halfsel") return "[-]";
  return image == "unsel" ? "[ ]" : "   ";
}

std::string entryLine(const TCTreeNode& entry) {
  return fmt::format("      {} {}  {}\n", entry.selectState == 1 ? "[x]" : "[ ]",
                     rightAligned(entry.size, kSizeColumns), escapedForDisplay(entry.path));
}

std::string categoryLine(const JunkReport::Category& category, const Style& style) {
  const std::string size = rightAligned(category.size, kSizeColumns);
  const std::string title = leftAligned(category.title, kTitleColumns);
  if (category.entries.empty()) {
    return style.dim(fmt::format("      {} {} {}", category.index, title, size)) + "\n";
  }
  return fmt::format("  {} {} {} {}  {}\n", box(category.boxImage), category.index,
                     style.bold(title), style.accent(size),
                     style.dim(counted(category.entries.size(), "item")));
}

std::string skippedLines(const std::vector<SkippedPath>& skipped, bool all) {
  if (skipped.empty()) return "";
  if (!all) {
    return fmt::format("{} could not be looked into; --details names them.\n",
                       counted(skipped.size(), "place"));
  }
  std::string text = "\nCould not be looked into:\n";
  for (const SkippedPath& place : skipped) {
    text += fmt::format("  {}: {}\n", escapedForDisplay(place.path), place.reason);
  }
  return text;
}

std::string entryText(const TCTreeNode& entry) {
  Json one = {{"title", replacedUtf8(entry.title)}};
  setPath(one, "path", entry.path);
  one["size"] = entry.size;
  one["bytes"] = entry.logicalBytes;
  one["selectState"] = entry.selectState;
  return one.dump();
}

// Entries are written one by one: as one value in memory, a large home would take half a gigabyte.
void append(std::string& text, const JunkReport::Category& category) {
  const Json head = {{"index", category.index},       {"title", category.title},
                     {"subTitle", category.subTitle}, {"size", category.size},
                     {"bytes", category.bytes},       {"boxImage", category.boxImage}};
  text += "    " + head.dump();
  text.back() = ',';
  text += "\n     \"entries\":[";
  const char* separator = "\n       ";
  for (const auto& entry : category.entries) {
    text += separator + entryText(*entry);
    separator = ",\n       ";
  }
  text += "]}";
}

template <typename Place>
Json placesJson(const std::vector<Place>& places) {
  Json all = Json::array();
  for (const Place& place : places) {
    Json one = Json::object();
    setPath(one, "path", place.path);
    one["reason"] = replacedUtf8(place.reason);
    all.push_back(std::move(one));
  }
  return all;
}

std::vector<std::string> selectedPaths(const std::vector<JunkReport::Category>& categories) {
  std::vector<std::string> paths;
  for (const JunkReport::Category& category : categories) {
    for (const auto& entry : category.entries) {
      if (entry->selectState == 1) paths.push_back(entry->path);
    }
  }
  return paths;
}

}  // namespace

std::size_t JunkReport::Category::selectedCount() const {
  return static_cast<std::size_t>(std::count_if(
      entries.begin(), entries.end(), [](const auto& entry) { return entry->selectState == 1; }));
}

void JunkReport::takeScan(const FastCleanModel& model,
                          const std::array<bool, kJunkCategoryCount>& wanted) {
  for (std::size_t i = 0; i < model.allTypeArr().size(); ++i) {
    // Without a size the scan, which was interrupted, may still be filling it.
    if (!wanted[i] || model.rows()[i].size.empty()) continue;
    const TCTreeNode& node = *model.allTypeArr()[i];
    Category category{static_cast<int>(i), node.title,        node.subTitle,
                      node.size,           node.logicalBytes, FastCleanModel::boxImage(node),
                      node.detailChildren};
    totalBytes += category.bytes;
    categories.push_back(std::move(category));
  }
  planCount = model.plan().size();
  planSize = CommUti::longlongConvertVolSpace(planCount == 0 ? 0 : model.planSize());
}

void JunkReport::takeCleaning(const FastCleanModel& model) {
  wasCleaned = true;
  removed = model.removedPaths();
  failed = model.failures();
  freed = model.cleanValueLabel();
  freedBytes = model.freedBytes();
  wasInterrupted = model.cleaningWasStopped();
}

std::string JunkReport::document() const {
  std::string text = "{\n  \"categories\":[\n";
  for (std::size_t i = 0; i < categories.size(); ++i) {
    if (i > 0) text += ",\n";
    append(text, categories[i]);
  }
  Json rest = {{"total", total},
               {"totalBytes", totalBytes},
               {"fullDiskAccess", fullDiskAccess},
               {"skipped", placesJson(skipped)}};
  if (isDryRun) {
    rest["dryRun"] = true;
    setPaths(rest, "wouldRemove", selectedPaths(categories));
  }
  if (wasCleaned) {
    setPaths(rest, "removed", removed);
    rest["failed"] = placesJson(failed);
    rest["freed"] = freed;
    rest["freedBytes"] = freedBytes;
  }
  if (wasInterrupted) rest["interrupted"] = true;
  return text + "],\n" + documentText(rest).substr(2);
}

std::string JunkReport::overview(Entries shown) const {
  const Style style = Style::ofStandardOutput();
  const std::string root = Host::current().folders->root();
  std::string text =
      style.bold(root.empty() ? "Junk on this machine" : "Junk below " + escapedForDisplay(root));
  text += "\n\n";
  for (const Category& category : categories) {
    if (shown == Entries::selected && category.selectedCount() == 0) continue;
    text += categoryLine(category, style);
    if (shown == Entries::none) continue;
    for (const auto& entry : category.entries) {
      if (shown == Entries::all || entry->selectState == 1) text += entryLine(*entry);
    }
    if (shown == Entries::all && !category.entries.empty()) text += "\n";
  }
  text += fmt::format("{}{} Junk files found.\n", text.ends_with("\n\n") ? "" : "\n",
                      style.bold(total));
  text += skippedLines(skipped, shown == Entries::all);
  return text;
}

std::string JunkReport::outcome() const {
  const Style style = Style::ofStandardOutput();
  std::string text =
      fmt::format("Removed {}, {}.", counted(removed.size(), "item"), style.bold(freed));
  text +=
      fmt::format(" The file system gave back {}.\n", CommUti::longlongConvertVolSpace(freedBytes));
  if (!failed.empty()) {
    text += style.warning(fmt::format("{} could not be removed:", counted(failed.size(), "item")));
    text += "\n";
    for (const FastCleanFailure& failure : failed) {
      text += fmt::format("  {}: {}\n", escapedForDisplay(failure.path),
                          escapedForDisplay(failure.reason));
    }
  }
  const std::size_t tried = removed.size() + failed.size();
  if (wasInterrupted && tried < planCount) {
    text += fmt::format("Interrupted: {} not tried.\n", counted(planCount - tried, "item"));
  }
  return text;
}

}  // namespace brisko
