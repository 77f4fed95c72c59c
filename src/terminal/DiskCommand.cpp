#include "DiskCommand.h"

#include "DiskAndVolumeInfo.h"
#include "DiskCommandText.h"
#include "DiskDetail.h"
#include "DiskEject.h"
#include "DiskFormat.h"
#include "DiskState.h"
#include "DisksReport.h"
#include "Interruption.h"
#include "Output.h"
#include "SystemLog.h"
#include "VolumeName.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <utility>
#include <vector>

#include <strings.h>

namespace brisko {

namespace {

// ext4 is what a volume of this host often is already; it can be kept.
constexpr const char* kHostType = "ext4";

/// Tells what came of an operation, once.
class Outcome {
 public:
  Outcome(const char* operation, const DiskAndVolumeObj& node, bool isJson)
      : isJson_(isJson), json_{{"operation", operation}} {
    setPath(json_, "diskId", node.diskId);
    setPath(json_, "volumeName", node.volumeName);
  }
  void set(const char* key, const std::string& value) { setPath(json_, key, value); }

  int planned(const std::vector<std::string>& commands) {
    json_["dryRun"] = true;
    json_["commands"] = commands;
    std::string text;
    for (const std::string& command : commands)
      text += "Would run: " + escapedForDisplay(command) + "\n";
    return write(text) ? kDone : kNotDone;
  }
  int done(const std::string& text) {
    json_["done"] = true;
    return write(text + "\n") ? kDone : kNotDone;
  }
  int failed(const std::string& text, const std::string& reason) {
    json_["done"] = false;
    setPath(json_, "reason", reason.empty() ? text : reason);
    writeError(reason.empty() ? text : text + ": " + reason);
    if (isJson_) write("");
    return Interruption::happened() ? kInterrupted : kNotDone;
  }

 private:
  bool write(const std::string& text) { return writeOut(isJson_ ? documentText(json_) : text); }

  bool isJson_;
  Json json_;
};

// The tool's own words, without the end of the line.
std::string reasonOf(const DiskCommandEnd& end) {
  std::string reason = end.errors;
  while (!reason.empty() && reason.back() == '\n')
    reason.pop_back();
  if (reason.empty() && end.status != 0) {
    reason = end.status < 0 ? "diskutil could not be started"
                            : fmt::format("diskutil ended with {}", end.status);
  }
  return reason;
}

// A device that the tool does not answer for any more.
std::string notKnown(const DiskState& after, const std::string& name, const char* what) {
  return after.isGone ? name + " is gone"
                      : fmt::format("whether {} was {} is not known", name, what);
}

int notOffered(const char* what, const DiskAndVolumeObj& node) {
  writeError(fmt::format("\"{}\" ({}) cannot be {}", node.volumeName, node.diskId, what));
  return kNotDone;
}

}  // namespace

void DiskCommand::declare(CLI::App& app) {
  app.require_subcommand(1);
  rename_ = app.add_subcommand("rename", "Give a volume another name");
  format_ = app.add_subcommand("format", "Erase a volume and make it anew");
  eject_ = app.add_subcommand("eject", "Make a disk or volume ready to be taken out");
  for (CLI::App* part : {rename_, format_, eject_}) {
    part->fallthrough();
    part->add_option("ID", id_, "The identifier, as \"brisko disks\" shows it")->required();
  }
  rename_->add_option("NAME", newName_, "The new name")->required();
  format_->add_option("--type", type_,
                      "\"ExFAT\", \"MS-DOS FAT32\", \"Journaled HFS+\" or \"ext4\"");
  format_->add_option("--name", formatName_, "The new name; \"NEW\" when it is left out");
  format_->add_option("--confirm", confirmation_,
                      "The name that the volume has now, so that no other is meant");
}

int DiskCommand::execute(const GlobalOptions& global) {
  if (format_->parsed() && !global.dryRun && !canConfirm()) {
    if (!global.yes || format_->count("--confirm") == 0) {
      throw WrongUsage(
          "disk format erases a volume: say --yes and --confirm NAME when nobody can be asked");
    }
  }
  const DiskListing listing = DiskListing::take();
  if (Interruption::happened()) return kInterrupted;
  const DiskNode node = listing.nodeNamed(id_, true);
  if (!node) return kNotDone;
  if (rename_->parsed()) return rename(listing, node, global);
  return format_->parsed() ? format(listing, node, global) : eject(listing, node, global);
}

int DiskCommand::rename(const DiskListing& listing, const DiskNode& node,
                        const GlobalOptions& global) const {
  const bool isAllowed = listing.offersFor(*node).rename &&
                         diskDetail(*node, isSystemVolume(listing.tree.disks, *node)).renameAllowed;
  if (!isAllowed) return notOffered("renamed", *node);
  if (!VolumeName::isGiven(newName_)) throw WrongUsage("disk rename: give a name");
  const std::string refusal = renameRefusal(*node, newName_);
  if (!refusal.empty()) throw WrongUsage("disk rename: " + refusal);
  const std::string given = VolumeName::forType(newName_, node->diskType);
  Outcome outcome("rename", *node, global.json);
  outcome.set("newName", given);
  if (global.dryRun) return outcome.planned({DiskCommandText::rename(node->diskUUID, given)});
  const DiskState before = DiskState::of(node->volRootDir);
  DiskCommandEnd end;
  DiskAndVolumeInfo::renameDiskWithGuid(node->diskUUID, given, &end);
  const DiskState after = DiskState::of(node->volRootDir);
  if (after.name == given) {
    return outcome.done(fmt::format("\"{}\" is now called \"{}\".",
                                    escapedForDisplay(node->volumeName), escapedForDisplay(given)));
  }
  const std::string name = "\"" + node->volumeName + "\"";
  if (!after.isThere) return outcome.failed(notKnown(after, name, "renamed"), reasonOf(end));
  return outcome.failed(after.name == before.name
                            ? name + " was not renamed"
                            : fmt::format("{} is now called \"{}\"", name, after.name),
                        reasonOf(end));
}

FormatPlan DiskCommand::formatPlan(const DiskAndVolumeObj& node) const {
  const FormatQuestion question = DiskFormat::question(node.volumeName, node.diskType);
  if (question.typeIsFixed) return DiskFormat::plan(node, "", "");
  std::vector<std::string> types(DiskFormat::kTypes.begin(), DiskFormat::kTypes.end());
  types.emplace_back(kHostType);
  const auto found = std::find_if(types.begin(), types.end(), [&](const std::string& type) {
    return ::strcasecmp(type.c_str(), type_.c_str()) == 0;
  });
  if (found == types.end()) {
    throw WrongUsage(fmt::format(
        "disk format: {}; --type takes ExFAT, \"MS-DOS FAT32\", \"Journaled HFS+\" or ext4",
        type_.empty() ? "no type is given" : "no type \"" + type_ + "\""));
  }
  return DiskFormat::plan(node, formatName_, *found);
}

// Twice: that it is to be done at all, and that this is the volume that is meant.
bool DiskCommand::userConfirmsFormat(const DiskAndVolumeObj& node, const FormatPlan& plan,
                                     const GlobalOptions& global) const {
  const FormatQuestion question = DiskFormat::question(node.volumeName, node.diskType);
  if (!global.yes) {
    const std::string text =
        fmt::format("{} It becomes {}, named \"{}\".", question.text, plan.type, plan.name);
    if (!confirm(escapedForDisplay(text))) return false;
  }
  if (format_->count("--confirm") > 0) return confirmation_ == node.volumeName;
  return ask("Type the volume's name to format it:") == node.volumeName;
}

int DiskCommand::format(const DiskListing& listing, const DiskNode& node,
                        const GlobalOptions& global) const {
  if (!listing.offersFor(*node).format) return notOffered("formatted", *node);
  const FormatPlan plan = formatPlan(*node);
  const std::string refusal = DiskFormat::refusal(plan);
  if (!refusal.empty()) throw WrongUsage("disk format: " + refusal);
  Outcome outcome("format", *node, global.json);
  outcome.set("type", plan.type);
  outcome.set("newName", plan.name);
  if (global.dryRun) return outcome.planned({plan.command});
  const std::string name = "\"" + node->volumeName + "\"";
  if (!userConfirmsFormat(*node, plan, global)) {
    if (Interruption::happened()) return kInterrupted;
    return outcome.failed(name + " was not formatted", "it was not confirmed by its name");
  }
  if (const std::string changed = DiskFormat::changedSince(*node); !changed.empty()) {
    return outcome.failed(name + " was not formatted", changed);
  }
  const DiskState before = DiskState::of(node->volRootDir);
  ProgressLine progress;
  progress.show("Formatting", node->volRootDir);
  const DiskCommandEnd end = DiskFormat::run(plan);
  progress.clear();
  const DiskState after = DiskState::of(node->volRootDir);
  if (!after.isThere) return outcome.failed(notKnown(after, name, "formatted"), reasonOf(end));
  if (after.type == before.type && after.uuid == before.uuid && after.name == before.name) {
    return outcome.failed(name + " was not formatted", reasonOf(end));
  }
  if (end.status != 0) {
    return outcome.failed("formatting " + name + " did not end well", reasonOf(end));
  }
  return outcome.done(fmt::format("Formatted. {} is now {}, named \"{}\".", node->diskId,
                                  after.type, escapedForDisplay(after.name)));
}

int DiskCommand::eject(const DiskListing& listing, const DiskNode& node,
                       const GlobalOptions& global) const {
  if (!listing.offersFor(*node).eject) return notOffered("ejected", *node);
  const std::vector<DiskNode> nodes = DiskEject::nodesOf(node);
  Outcome outcome("eject", *node, global.json);
  std::vector<std::string> commands;
  for (const DiskNode& one : nodes) {
    if (!DiskEject::fits(*one)) return notOffered("ejected", *one);
    commands.push_back(DiskCommandText::eject(one->diskId));
  }
  if (global.dryRun) return outcome.planned(commands);
  for (const DiskEject::Ended& one : DiskEject::run(nodes)) {
    if (one.isOut) continue;
    return outcome.failed(fmt::format("\"{}\" was not ejected", one.node->volumeName),
                          reasonOf(one.end));
  }
  return outcome.done(fmt::format("\"{}\" can be taken out.", escapedForDisplay(node->volumeName)));
}

}  // namespace brisko
