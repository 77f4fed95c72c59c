#include "DuplicatesReport.h"

#include "CommUti.h"
#include "Json.h"
#include "Output.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <vector>

namespace brisko {

std::string countedCopies(std::size_t count) {
  return fmt::format("{} {}", count, count == 1 ? "copy" : "copies");
}

namespace {

constexpr std::size_t kPiece = 64 * 1024;

Json leafJson(const SimpleNodeData& data) {
  Json leaf = Json::object();
  setPath(leaf, "name", data.name());
  leaf["fileSize"] = data.fileSize;
  leaf["ModificationDate"] =
      data.isBundle ? Json(nullptr) : Json(isoDate(data.ModificationDate.seconds));
  leaf["hardLink"] = data.hardLink;
  return leaf;
}

Json groupJson(const SimpleTreeNode& group) {
  const SimpleNodeData& data = group.nodeData;
  Json object = Json::object();
  setPath(object, "name", data.name());
  object["extendName"] = replacedUtf8(data.extendName());
  object["fileType"] = static_cast<int>(data.fileType);
  object["fileSize"] = data.fileSize;
  Json children = Json::array();
  for (const SimpleTreeNode* leaf : group.children)
    children.push_back(leafJson(leaf->nodeData));
  object["children"] = std::move(children);
  return object;
}

// The members of an object without its braces, to be set into a document that is written piecewise.
std::string membersOf(const Json& object) {
  const std::string text = object.dump(2);
  return text.substr(2, text.size() - 4);
}

std::string sizeText(std::uint64_t bytes) {
  return CommUti::longlongDiskSize(bytes);
}

}  // namespace

void DuplicatesReport::write(const std::string& text) {
  isWritten_ = isWritten_ && writeOut(text);
}

void DuplicatesReport::writeGroups() {
  isJson_ ? writeJsonGroups() : writeTextGroups();
}

void DuplicatesReport::writeJsonGroups() {
  std::string text = "{\n  \"groups\": [";
  bool isFirst = true;
  const SimpleTreeNode* root = model_.treeData();
  for (std::size_t i = 0; root != nullptr && i < root->numberOfChildren(); ++i) {
    text += isFirst ? "\n    " : ",\n    ";
    isFirst = false;
    text += groupJson(*root->children[i]).dump();
    if (text.size() < kPiece) continue;
    write(text);
    text.clear();
  }
  write(text + (isFirst ? "]" : "\n  ]"));
  Json skipped = Json::array();
  for (const SkippedFolder& folder : model_.skipped()) {
    Json one = Json::object();
    setPath(one, "path", folder.path);
    one["reason"] = replacedUtf8(folder.reason);
    skipped.push_back(std::move(one));
  }
  writeMembers(membersOf(Json{{"skipped", std::move(skipped)}}));
}

void DuplicatesReport::writeTextGroups() {
  const Style style = Style::ofStandardOutput();
  std::string text;
  const SimpleTreeNode* root = model_.treeData();
  for (std::size_t i = 0; root != nullptr && i < root->numberOfChildren(); ++i) {
    const SimpleTreeNode& group = *root->children[i];
    text += style.bold(fmt::format("{} of {}", countedCopies(group.numberOfChildren()),
                                   sizeText(group.children.back()->nodeData.fileSize)));
    text += '\n';
    for (const SimpleTreeNode* leaf : group.children) {
      text += "  ";
      text += escapedForDisplay(leaf->nodeData.name());
      if (leaf->nodeData.hardLink) text += style.dim("  (another name of a file in this group)");
      if (leaf == group.children.back()) text += style.accent("  (kept)");
      text += '\n';
    }
    text += '\n';
    if (text.size() < kPiece) continue;
    write(text);
    text.clear();
  }
  text += fmt::format("{} in {}.\n", model_.filesText(),
                      counted(root == nullptr ? 0 : root->numberOfChildren(), "group"));
  for (const SkippedFolder& folder : model_.skipped()) {
    text += style.warning(fmt::format("Skipped {}: {}", escapedForDisplay(folder.path),
                                      escapedForDisplay(folder.reason)));
    text += '\n';
  }
  write(text);
}

void DuplicatesReport::writeMembers(const std::string& members) {
  write(",\n" + members);
}

void DuplicatesReport::writePlan() {
  if (!isJson_) {
    write(fmt::format("Would remove {}, {}.\n", countedCopies(model_.selectedCount()),
                      sizeText(model_.selectedSize())));
    return;
  }
  std::vector<std::string> paths;
  for (const SimpleTreeNode* leaf : model_.allSelectNumArr())
    paths.push_back(leaf->nodeData.name());
  Json document = {{"dryRun", true}};
  setPaths(document, "wouldRemove", paths);
  writeMembers(membersOf(document));
}

void DuplicatesReport::writeOutcome() {
  if (isJson_) {
    Json failed = Json::array();
    for (const DuplicateFailure& failure : model_.failures()) {
      Json one = Json::object();
      setPath(one, "path", failure.path);
      one["reason"] = replacedUtf8(failure.reason);
      failed.push_back(std::move(one));
    }
    Json document = Json::object();
    setPaths(document, "removed", model_.removedPaths());
    document["failed"] = std::move(failed);
    document["freedBytes"] = model_.freedBytes();
    writeMembers(membersOf(document));
    return;
  }
  const Style style = Style::ofStandardOutput();
  std::string text =
      fmt::format("Removed {}. The file system gave back {}.\n",
                  countedCopies(model_.removedPaths().size()), sizeText(model_.freedBytes()));
  for (const DuplicateFailure& failure : model_.failures()) {
    text += style.warning(fmt::format("Stays: {}: {}", escapedForDisplay(failure.path),
                                      escapedForDisplay(failure.reason)));
    text += '\n';
  }
  write(text);
}

void DuplicatesReport::writeEnd() {
  if (isJson_) write("\n}\n");
}

}  // namespace brisko
