#include "BrowsersReport.h"

#include "Output.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <set>

namespace brisko {
namespace {

constexpr std::size_t kNameColumns = 20;
constexpr std::size_t kSizeColumns = 14;

const char* box(const BrowerObj& row) {
  if (row.isSelect == 1) return "[x]";
  return row.isSelect == 2 ? "[-]" : "[ ]";
}

Json planJson(const BrowerObj& kind) {
  const auto browser = kind.parObj.lock();
  Json one = {{"browser", replacedUtf8(browser ? browser->name : "")},
              {"kind", replacedUtf8(kind.name)},
              {"size", kind.size}};
  std::vector<std::string> paths;
  for (const BrowserTarget& target : kind.targets)
    paths.push_back(target.path);
  setPaths(one, "paths", paths);
  return one;
}

Json kindJson(const BrowerObj& kind) {
  Json one = {{"name", replacedUtf8(kind.name)}, {"size", kind.size}};
  if (kind.count) {
    one["count"] = *kind.count;
  } else {
    one["bytes"] = kind.bytes;
  }
  one["urlStr"] = replacedUtf8(kind.urlStr);
  one["isSelect"] = kind.isSelect;
  if (!kind.reasons.empty()) {
    one["reasons"] = Json::array();
    for (const std::string& reason : kind.reasons)
      one["reasons"].push_back(replacedUtf8(reason));
  }
  return one;
}

Json browserJson(const BrowerObj& browser) {
  Json kinds = Json::array();
  for (const auto& kind : browser.chrArr)
    kinds.push_back(kindJson(*kind));
  return {{"name", replacedUtf8(browser.name)},
          {"isSelect", browser.isSelect},
          {"chrArr", std::move(kinds)}};
}

std::string kindLines(const BrowerObj& kind, const Style& style) {
  std::string text = fmt::format("  {} {} {}\n", box(kind), leftAligned(kind.name, kNameColumns),
                                 style.accent(rightAligned(kind.size, kSizeColumns)));
  for (const std::string& reason : kind.reasons)
    text += "        " + style.warning(escapedForDisplay(reason)) + "\n";
  return text;
}

std::string tableOf(const InternetModel& model) {
  const Style style = Style::ofStandardOutput();
  std::string text;
  for (const auto& browser : model.browserArr()) {
    text += fmt::format("{} {}\n", box(*browser), style.bold(escapedForDisplay(browser->name)));
    for (const auto& kind : browser->chrArr)
      text += kindLines(*kind, style);
    text += "\n";
  }
  return text;
}

}  // namespace

void BrowsersReport::takeScan(const InternetModel& model) {
  browsers = Json::array();
  for (const auto& browser : model.browserArr())
    browsers.push_back(browserJson(*browser));
  const auto plan = model.plan();
  planCount = plan.size();
  for (const auto& kind : plan)
    wouldErase.push_back(planJson(*kind));
  losses = model.losses();
  table = tableOf(model);
}

void BrowsersReport::takeCleaning(const InternetModel& model) {
  wasCleaned = true;
  browsers = Json::array();
  for (const auto& browser : model.browserArr())
    browsers.push_back(browserJson(*browser));
  cleanedCount = model.cleaned().size();
  failed = model.failures();
  wasStopped = model.cleaningWasStopped();
}

std::string BrowsersReport::document() const {
  Json document = {{"browsers", browsers}};
  if (isDryRun) {
    document["dryRun"] = true;
    document["wouldErase"] = wouldErase;
    document["losses"] = losses;
  }
  if (wasCleaned) {
    document["failed"] = Json::array();
    for (const BrowserFailure& failure : failed) {
      document["failed"].push_back({{"browser", replacedUtf8(failure.browser)},
                                    {"kind", replacedUtf8(failure.kind)},
                                    {"reason", replacedUtf8(failure.reason)}});
    }
  }
  if (wasStopped) document["interrupted"] = true;
  return documentText(document);
}

std::string BrowsersReport::overview(bool isPlan) const {
  if (browsers.empty()) return "No browser was found.\n";
  std::string text = table;
  const std::string kinds = counted(planCount, "kind") + " of data";
  if (!isPlan) {
    text += fmt::format("Ticked: {}. \"brisko browsers --clean\" erases them.\n", kinds);
  } else if (planCount == 0) {
    text += "Nothing to erase.\n";
  } else if (isDryRun) {
    text += fmt::format("Would erase {}.\n", kinds);
    for (const std::string& loss : losses)
      text += escapedForDisplay(loss) + "\n";
  }
  return text;
}

std::string BrowsersReport::outcome() const {
  if (!wasCleaned || planCount == 0) return "";
  const Style style = Style::ofStandardOutput();
  std::string text = fmt::format("Erased {} of data.\n", counted(cleanedCount, "kind"));
  std::set<std::pair<std::string, std::string>> kinds;
  for (const BrowserFailure& failure : failed)
    kinds.emplace(failure.browser, failure.kind);
  if (!kinds.empty()) {
    text += style.warning(fmt::format("{} could not be cleaned:", counted(kinds.size(), "kind")));
    text += "\n";
  }
  for (const BrowserFailure& failure : failed) {
    text += fmt::format("  {}, {}: {}\n", escapedForDisplay(failure.browser), failure.kind,
                        escapedForDisplay(failure.reason));
  }
  if (wasStopped) text += "Interrupted: the rest was not tried.\n";
  return text;
}

}  // namespace brisko
