#include "FastCleanFileNode.h"

#include "FileIdentity.h"
#include "SystemLog.h"
#include "ZkAuthorization.h"

#include <string_view>

namespace brisko {
namespace {

struct Split {
  std::string_view folder;
  std::string_view name;
};

Split split(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return {};
  return {path.substr(0, slash), path.substr(slash + 1)};
}

bool isNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// "…/Trash", "…/.Trash-1000" or "…/.Trash/1000".
bool isTrashFolder(std::string_view path) {
  const Split last = split(path);
  if (last.name == "Trash") return true;
  constexpr std::string_view kOwn = ".Trash-";
  if (last.name.starts_with(kOwn)) return isNumber(last.name.substr(kOwn.size()));
  return isNumber(last.name) && split(last.folder).name == ".Trash";
}

bool isOfKind(const std::string& path, FileKind kind) {
  const auto identity = FileIdentity::at(path);
  return identity && identity->kind == kind;
}

}  // namespace

std::string trashInfoPath(const std::string& path) {
  const Split entry = split(path);
  const Split files = split(entry.folder);
  if (entry.name.empty() || files.name != "files" || !isTrashFolder(files.folder)) return "";
  const std::string info = std::string(files.folder) + "/info";
  if (!isOfKind(info, FileKind::directory)) return "";
  std::string record = info + "/" + std::string(entry.name) + ".trashinfo";
  return isOfKind(record, FileKind::regular) ? record : "";
}

FastCleanFileNode& FastCleanFileNode::shareInstall() {
  static auto* shared = new FastCleanFileNode;
  return *shared;
}

ZkAuthorization& FastCleanFileNode::removalService() {
  if (service_ == nullptr) service_ = &ZkAuthorization::shareZkAuthorization();
  return *service_;
}

bool FastCleanFileNode::removeFile(const std::string& path) {
  return removalService().synFastRemovePath(path);
}

RemovalReport FastCleanFileNode::removeFile(const TCTreeNode& entry,
                                            const std::atomic<bool>* cancel) {
  // Without knowing what was shown nothing can say that it is still that.
  if (!entry.identity) {
    RemovalReport report;
    report.outcome = RemovalOutcome::failed;
    report.reason = "It could not be looked at when it was found";
    return report;
  }
  const std::string record = trashInfoPath(entry.path);
  const auto shownRecord = record.empty() ? std::nullopt : FileIdentity::at(record);
  RemovalReport report = removalService().synFastRemovePath(entry.path, entry.identity, cancel);
  if (!report.removed() || !shownRecord) return report;
  // The record says where the file came from; it is worth nothing without the file, and everything
  // with it, so it goes second.
  const RemovalReport recordReport = removalService().synFastRemovePath(record, shownRecord);
  report.freedBytes += recordReport.freedBytes;
  report.removedItems += recordReport.removedItems;
  if (!recordReport.removed()) {
    SystemLog::line("Trash record stays: {}: {}", record, recordReport.reason);
  }
  return report;
}

}  // namespace brisko
