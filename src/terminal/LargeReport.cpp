#include "LargeReport.h"

#include "CommUti.h"
#include "FileFilter.h"
#include "Json.h"
#include "Output.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <utility>

namespace brisko {
namespace {

constexpr std::size_t kPiece = 64 * 1024;
constexpr std::size_t kSizeColumns = 11;

// A folder that is being written.
struct Level {
  std::vector<FileNode*> entries;
  std::size_t next = 0;
};

// The entry's members up to its children.
std::string opening(const FileNode& node) {
  Json entry = Json::object();
  setPath(entry, "name", node._name());
  setPath(entry, "path", node._path());
  entry["isDirectory"] = node._isDirectory();
  entry["size"] = CommUti::convertVolSpace(node.size);
  entry["bytes"] = node.size;
  entry["modifyTime"] = node.isLooked ? Json(isoDate(node.modificationSeconds)) : Json(nullptr);
  if (const std::string reason = node.reason(); !reason.empty()) entry["reason"] = reason;
  std::string text = entry.dump();
  text.pop_back();
  return text + ",\"children\":[";
}

// The members of an object without its braces, to be set into a document that is written piecewise.
std::string membersOf(const Json& object) {
  const std::string text = object.dump(2);
  return ",\n" + text.substr(2, text.size() - 4);
}

}  // namespace

std::vector<FileNode*> LargeListing::entriesOf(FileNode& folder) const {
  std::vector<FileNode*> entries;
  for (FileNode* node : folder.children()) {
    if (top > 0 && entries.size() == top) break;
    if (isShown(*node)) entries.push_back(node);
  }
  return entries;
}

void LargeReport::write(const std::string& text) {
  isWritten_ = isWritten_ && writeOut(text);
}

void LargeReport::writeTree() {
  isJson_ ? writeJsonTree() : writeTextTree();
}

void LargeReport::writeJsonTree() {
  FileNode& root = *controller_.root();
  Json head = Json::object();
  setPath(head, "path", root._path());
  head["size"] = CommUti::convertVolSpace(root.size);
  head["bytes"] = root.size;
  std::string text = "{" + membersOf(head).substr(1) + ",\n  \"children\": [";
  std::vector<Level> levels;
  levels.push_back({listing_.entriesOf(root), 0});
  while (!levels.empty()) {
    Level& level = levels.back();
    if (level.next == level.entries.size()) {
      levels.pop_back();
      text += levels.empty() ? "\n  ]" : "]}";
      continue;
    }
    FileNode& node = *level.entries[level.next++];
    const char* const break_ = levels.size() == 1 ? "\n    " : "";
    text += level.next == 1 ? break_ : fmt::format(",{}", break_);
    text += opening(node);
    if (listing_.goesBelow(levels.size())) {
      levels.push_back({listing_.entriesOf(node), 0});
    } else {
      text += "]}";
    }
    if (text.size() < kPiece) continue;
    write(text);
    text.clear();
  }
  Json skipped = Json::array();
  for (const FileNode* folder : controller_.eumeRoot()->nodeTreeOperator().unread()) {
    Json one = Json::object();
    setPath(one, "path", folder->_path());
    one["reason"] = folder->reason();
    skipped.push_back(std::move(one));
  }
  write(text + membersOf(Json{{"skipped", std::move(skipped)}}));
}

void LargeReport::writeTextTree() {
  const Style style = Style::ofStandardOutput();
  FileNode& root = *controller_.root();
  const std::size_t prefix = root._path().size() + (root._path() == "/" ? 0 : 1);
  const auto sizeOf = [](const FileNode& node) {
    return rightAligned(CommUti::longlongDiskSize(node.size), kSizeColumns);
  };
  std::string text;
  std::vector<Level> levels;
  levels.push_back({listing_.entriesOf(root), 0});
  while (!levels.empty()) {
    Level& level = levels.back();
    if (level.next == level.entries.size()) {
      levels.pop_back();
      continue;
    }
    FileNode& node = *level.entries[level.next++];
    const std::string date = node.isLooked ? isoDate(node.modificationSeconds) : "";
    std::string name = escapedForDisplay(node._path().substr(prefix));
    if (node._isDirectory()) name = style.bold(name + "/");
    text += fmt::format("{}  {}  {}", sizeOf(node), style.dim(leftAligned(date.substr(0, 10), 10)),
                        name);
    if (const std::string reason = node.reason(); !reason.empty()) {
      text += style.warning(fmt::format("  ({})", reason));
    }
    text += '\n';
    if (listing_.goesBelow(levels.size())) levels.push_back({listing_.entriesOf(node), 0});
    if (text.size() < kPiece) continue;
    write(text);
    text.clear();
  }
  const auto& reader = controller_.eumeRoot()->nodeTreeOperator();
  text += fmt::format("{}  in {}, {}.\n", sizeOf(root), escapedForDisplay(root._path()),
                      counted(reader.entries(), "item"));
  if (const std::size_t count = reader.unread().size(); count > 0) {
    text += style.warning(fmt::format("{} could not be read.", counted(count, "folder")));
    text += '\n';
  }
  write(text);
}

void LargeReport::writePlan(const std::vector<FileNode*>& nodes) {
  std::vector<std::string> paths;
  std::uint64_t bytes = 0;
  for (const FileNode* node : nodes) {
    paths.push_back(node->_path());
    bytes += node->size;
  }
  if (isJson_) {
    Json document = {{"dryRun", true}};
    setPaths(document, "wouldRemove", paths);
    return write(membersOf(document));
  }
  std::string text;
  for (const std::string& path : paths)
    text += fmt::format("Would remove {}\n", escapedForDisplay(path));
  write(text + fmt::format("Together {}.\n", CommUti::longlongDiskSize(bytes)));
}

void LargeReport::writeOutcome() {
  if (isJson_) {
    Json failed = Json::array();
    for (const LargeFileFailure& failure : controller_.failures()) {
      Json one = Json::object();
      setPath(one, "path", failure.path);
      one["reason"] = replacedUtf8(failure.reason);
      failed.push_back(std::move(one));
    }
    Json document = Json::object();
    setPaths(document, "removed", controller_.removedPaths());
    document["failed"] = std::move(failed);
    document["freedBytes"] = controller_.freedBytes();
    return write(membersOf(document));
  }
  const Style style = Style::ofStandardOutput();
  std::string text = fmt::format("Removed {}. The file system gave back {}.\n",
                                 counted(controller_.removedPaths().size(), "item"),
                                 CommUti::longlongDiskSize(controller_.freedBytes()));
  for (const LargeFileFailure& failure : controller_.failures()) {
    text += style.warning(fmt::format("Stays: {}: {}", escapedForDisplay(failure.path),
                                      escapedForDisplay(failure.reason)));
    text += '\n';
  }
  write(text);
}

void LargeReport::writeEnd() {
  if (isJson_) write("\n}\n");
}

}  // namespace brisko
