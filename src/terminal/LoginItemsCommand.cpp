#include "LoginItemsCommand.h"

#include "Dispatch.h"
#include "Interruption.h"
#include "Json.h"
#include "Output.h"
#include "StartupItemsModel.h"
#include "SystemLog.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <charconv>
#include <filesystem>

namespace brisko {
namespace {

/// Hears what does not work.
struct Failures : StartupItemsListener {
  void itemsChanged() override {}
  void changeFailed(const std::string& text) override { reason = text; }
  std::string reason;
};

void read(StartupItemsModel& model) {
  if (!model.isScan()) model.updateLoginItemsList();
  Dispatch::runUntil([&] { return !model.isScan() || Interruption::happened(); });
}

Json document(const StartupItemsModel& model) {
  Json items = Json::array();
  for (const ASLoginStartItem& item : model.allItems()) {
    Json json;
    json["name"] = replacedUtf8(item.name);
    setPath(json, "path", item.path);
    json["subName"] = replacedUtf8(item.subName);
    json["bIsSelected"] = item.bIsSelected;
    items.push_back(std::move(json));
  }
  Json switched = Json::array();
  for (const SwitchedLoginItem& item : model.switchedItems()) {
    Json json;
    json["name"] = replacedUtf8(item.name);
    setPath(json, "path", item.path);
    json["isForEveryone"] = item.isForEveryone;
    json["isOn"] = item.isOn;
    switched.push_back(std::move(json));
  }
  return {{"items", std::move(items)}, {"switched", std::move(switched)}};
}

std::string text(const StartupItemsModel& model) {
  const Style style = Style::ofStandardOutput();
  std::string lines;
  std::size_t number = 0;
  for (const ASLoginStartItem& item : model.allItems()) {
    lines +=
        fmt::format("{} {} {}{}\n", rightAligned(std::to_string(++number), 3),
                    leftAligned(escapedForDisplay(item.name), 28),
                    style.dim(escapedForDisplay(item.path)), item.bIsSelected ? "  (hidden)" : "");
  }
  if (number == 0) lines = "Nothing opens when you log in.\n";
  if (!model.switchedItems().empty()) lines += "\nSet up by others:\n";
  for (const SwitchedLoginItem& item : model.switchedItems()) {
    lines += fmt::format("  {} {} {}\n", item.isOn ? "on " : "off",
                         leftAligned(escapedForDisplay(item.name), 28),
                         style.dim(escapedForDisplay(item.path)));
  }
  return lines;
}

}  // namespace

void LoginItemsCommand::declare(CLI::App& app) {
  app.add_option("ACTION", words_,
                 "add PATH, remove N, hide N or show N, with N as printed; nothing to list");
}

void LoginItemsCommand::checkWords() const {
  static constexpr const char* kActions[] = {"add", "remove", "hide", "show"};
  if (words_.empty()) return;
  if (std::find(std::begin(kActions), std::end(kActions), words_[0]) == std::end(kActions)) {
    throw WrongUsage(
        fmt::format("login-items: no action \"{}\"; there are add, remove, hide, show", words_[0]));
  }
  if (words_.size() != 2) {
    throw WrongUsage(fmt::format("login-items: {} takes one {}", words_[0],
                                 words_[0] == "add" ? "path" : "number"));
  }
  std::error_code error;
  if (words_[0] == "add" && !std::filesystem::exists(words_[1], error)) {
    throw WrongUsage(fmt::format("login-items: \"{}\": {}", words_[1],
                                 error ? error.message() : "No such file or directory"));
  }
}

std::size_t LoginItemsCommand::row(const StartupItemsModel& model) const {
  const std::string& number = words_[1];
  std::size_t value = 0;
  const auto parsed = std::from_chars(number.data(), number.data() + number.size(), value);
  const bool isNumber = parsed.ec == std::errc() && parsed.ptr == number.data() + number.size();
  if (!isNumber || value == 0 || value > model.allItems().size()) {
    throw WrongUsage(
        fmt::format("login-items: no item \"{}\"; there are {}", number, model.allItems().size()));
  }
  return value - 1;
}

// The entry at a row's index can be another one than the row shows; nobody should change that
// without knowing.
bool LoginItemsCommand::agrees(const StartupItemsModel& model, std::size_t row,
                               const GlobalOptions& global) const {
  const std::string entry = model.entryFor(row);
  if (entry == model.allItems()[row].path) return true;
  const std::string text =
      fmt::format("Item {} stands where an entry that is not shown is stored: {}", row + 1, entry);
  if (global.yes) {
    writeError(text);
    return true;
  }
  return canConfirm() &&
         confirm(text + ". " + (words_[0] == "remove" ? "Remove" : "Change") + " that entry?");
}

std::string LoginItemsCommand::target(const StartupItemsModel& model) const {
  if (words_[0] == "add") return std::filesystem::absolute(words_[1]).lexically_normal().string();
  const std::size_t index = row(model);
  const bool isHidden = model.allItems()[index].bIsSelected;
  const bool isAsked = words_[0] == "remove" || isHidden != (words_[0] == "hide");
  return isAsked ? model.entryFor(index) : "";
}

int LoginItemsCommand::change(StartupItemsModel& model, const std::string& target,
                              const GlobalOptions& global) const {
  if (words_[0] != "add" && !agrees(model, row(model), global)) {
    writeError("nothing was changed");
    return kNotDone;
  }
  Failures failures;
  model.setListener(&failures);
  if (words_[0] == "add") {
    model.addButtonAction(target);
  } else if (words_[0] == "remove") {
    model.removeButtonActoion(row(model));
  } else {
    model.setHideStar(row(model));
  }
  read(model);
  model.setListener(nullptr);
  if (failures.reason.empty()) return kDone;
  writeError(failures.reason);
  return kNotDone;
}

int LoginItemsCommand::execute(const GlobalOptions& global) {
  checkWords();
  StartupItemsModel model;
  read(model);
  if (Interruption::happened()) return kInterrupted;
  const std::string asked = words_.empty() ? "" : target(model);
  const bool isPlan = global.dryRun && !words_.empty();
  int status = kDone;
  if (!isPlan && !asked.empty()) status = change(model, asked, global);
  if (Interruption::happened()) return kInterrupted;
  Json json = document(model);
  std::string lines = text(model);
  if (isPlan) {
    json["dryRun"] = true;
    json["would"] = asked.empty() ? "" : words_[0];
    setPath(json, "target", asked);
    lines += asked.empty() ? "Nothing would change.\n"
                           : fmt::format("Would {} {}.\n", words_[0], escapedForDisplay(asked));
  }
  return writeOut(global.json ? documentText(json) : lines) ? status : kNotDone;
}

}  // namespace brisko
