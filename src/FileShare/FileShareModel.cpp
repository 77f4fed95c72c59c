#include "FileShareModel.h"

#include "Dispatch.h"
#include "FileIdentity.h"
#include "Host.h"
#include "Removal.h"
#include "SystemLog.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <map>
#include <unordered_set>
#include <utility>

#include <sys/stat.h>

namespace brisko {
namespace {

constexpr const char* kCancelled = "The operation was canceled by the user.";

bool exists(const std::string& path) {
  struct stat status;
  return ::lstat(path.c_str(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

bool isExpanded(const FileObj& item) {
  return item.isDir && !isAppBundle(item);
}

bool liesInOneOf(const std::unordered_set<std::string>& folders, const std::string& path) {
  for (std::size_t end = path.rfind('/'); end > 0; end = path.rfind('/', end - 1)) {
    if (folders.contains(path.substr(0, end))) return true;
  }
  return false;
}

}  // namespace

/// An expansion under way, shared with its worker.
struct FileShareModel::Planning {
  FileObjs top;
  FileObjs items;
  std::atomic<bool> cancel = false;
};

FileShareModel::FileShareModel() = default;

FileShareModel::~FileShareModel() {
  cancelPlan();
  if (removeFileAndFolder_) {
    removeFileAndFolder_->delegate = nullptr;
    removeFileAndFolder_->isCancel();
  }
}

void FileShareModel::tell(void (FileShareModelListener::*what)()) {
  if (listener_ != nullptr) (listener_->*what)();
}

// The list.

std::vector<FileShareRefusal> FileShareModel::addFileToArr(const std::vector<std::string>& paths) {
  std::vector<FileShareRefusal> refused;
  std::unordered_set<std::string> listed;
  for (const auto& item : valueArr_)
    listed.insert(item->url);
  for (const std::string& path : paths) {
    int error = 0;
    std::shared_ptr<FileObj> item = buildFileObj(path, error);
    if (!item) {
      refused.push_back({path, error == ENOENT ? "It is not there." : std::strerror(error)});
    } else if (const auto no = RemovalEngine().refusal(item->url)) {
      refused.push_back({path, no->reason});
    } else if (listed.insert(item->url).second) {
      valueArr_.push_back(std::move(item));
    }
  }
  // What is to be erased has no outcome yet.
  std::erase_if(deleteErrorArr_, [&](const auto& item) { return listed.contains(item->url); });
  tell(&FileShareModelListener::listChanged);
  return refused;
}

bool FileShareModel::isAnyOnNtfs(const std::vector<std::string>& paths) {
  const auto volumes = Host::current().workspace->mountedVolumes();
  return std::any_of(paths.begin(), paths.end(), [&](const std::filesystem::path& path) {
    // A link lies where it is, not where it leads.
    std::error_code error;
    const std::string place =
        std::filesystem::weakly_canonical(path.parent_path(), error) / path.filename();
    const MountedVolume* holder = nullptr;
    for (const MountedVolume& volume : volumes) {
      const bool holds = volume.root == "/" || place == volume.root || isBelow(place, volume.root);
      if (holds && (holder == nullptr || volume.root.size() > holder->root.size()))
        holder = &volume;
    }
    return holder != nullptr && holder->fileSystemName.find("ntfs") != std::string::npos;
  });
}

void FileShareModel::removeFromList(std::size_t row) {
  if (!isCanClick() || row >= rowCount()) return;
  const auto at = static_cast<std::ptrdiff_t>(row);
  if (isOutcome(row)) {
    deleteErrorArr_.erase(deleteErrorArr_.begin() + at);
  } else {
    valueArr_.erase(valueArr_.begin() + at - static_cast<std::ptrdiff_t>(deleteErrorArr_.size()));
  }
  tell(&FileShareModelListener::listChanged);
}

void FileShareModel::emptyListButtonAction() {
  if (!isCanClick()) return;
  valueArr_.clear();
  deleteErrorArr_.clear();
  notes_.clear();
  errorString_.clear();
  tell(&FileShareModelListener::listChanged);
}

const FileObj& FileShareModel::row(std::size_t row) const {
  return isOutcome(row) ? *deleteErrorArr_[row] : *valueArr_[row - deleteErrorArr_.size()];
}

void FileShareModel::toggle(std::size_t row) {
  if (!isCanClick() || isOutcome(row) || row >= rowCount()) return;
  FileObj& item = *valueArr_[row - deleteErrorArr_.size()];
  item.isSelect = !item.isSelect;
  tell(&FileShareModelListener::listChanged);
}

void FileShareModel::setAllSelectOrNoSelect(bool select) {
  if (!isCanClick()) return;
  for (const auto& item : valueArr_)
    item->isSelect = select;
  tell(&FileShareModelListener::listChanged);
}

std::size_t FileShareModel::selectedCount() const {
  return static_cast<std::size_t>(std::count_if(valueArr_.begin(), valueArr_.end(),
                                                [](const auto& item) { return item->isSelect; }));
}

const char* FileShareModel::selectAllImage() const {
  const std::size_t selected = selectedCount();
  if (selected == 0) return "unsel";
  return selected == valueArr_.size() ? "sel" : "halfsel";
}

// The plan.

void FileShareModel::preparePlan() {
  if (!isCanClick()) return;
  plan_.clear();
  planning_ = std::make_shared<Planning>();
  for (const auto& item : valueArr_) {
    if (item->isSelect) planning_->top.push_back(item);
  }
  tell(&FileShareModelListener::pageChanged);
  Dispatch::global([planning = planning_, this] {
    std::unordered_set<std::string> folders;
    for (const auto& item : planning->top) {
      if (isExpanded(*item)) folders.insert(item->url);
    }
    for (const auto& item : planning->top) {
      // What lies in another listed folder has its turn with that.
      if (liesInOneOf(folders, item->url)) continue;
      if (isExpanded(*item)) eumeAllArrWithFileObj(*item, planning->items, &planning->cancel);
      planning->items.push_back(item);
    }
    Dispatch::mainAsync([planning, this] {
      if (planning->cancel) return;  // the model may be gone
      plan_ = std::move(planning->items);
      planning_.reset();
      tell(&FileShareModelListener::pageChanged);
      tell(&FileShareModelListener::planReady);
    });
  });
}

void FileShareModel::cancelPlan() {
  if (!planning_) return;
  planning_->cancel = true;
  planning_.reset();
  tell(&FileShareModelListener::pageChanged);
}

std::uint64_t FileShareModel::planBytes() const {
  std::uint64_t bytes = 0;
  for (const auto& item : plan_)
    bytes += static_cast<std::uint64_t>(item->size);
  return bytes;
}

bool FileShareModel::hasSolidState() const {
  return std::any_of(plan_.begin(), plan_.end(), [](const auto& item) { return item->isSSD; });
}

// The run.

void FileShareModel::doDeleteButtonClick() {
  if (!isCanClick() || plan_.empty()) return;
  deleteErrorArr_.clear();
  notes_.clear();
  errorString_.clear();
  isFailedEraser_ = false;
  isCancel_ = false;
  removeFileAndFolder_ =
      std::make_shared<RemoveFileAndFolder>(static_cast<RemoveFileAndFolderDelegate*>(this));
  removeFileAndFolder_->setErasesAllNames(erasesAllNames_);
  if (timesForRun_) removeFileAndFolder_->setEraserTimes(*timesForRun_);
  tell(&FileShareModelListener::listChanged);
  tell(&FileShareModelListener::pageChanged);
  removeFileAndFolder_->benginToTraskWithArr(plan_);
}

void FileShareModel::cancelShred() {
  if (!isShredding()) return;
  isCancel_ = true;
  removeFileAndFolder_->isCancel();
}

void FileShareModel::removeProgress(const std::string& path, float progress) {
  if (listener_ != nullptr) listener_->changeProgressValue(static_cast<int>(progress), path);
}

void FileShareModel::haveFailEraser() {
  isFailedEraser_ = true;
}

void FileShareModel::removeObjEnd(const FileObjs& items) {
  notes_ = removeFileAndFolder_->notes();
  settleOutcomes(items);
  const auto engine = std::move(removeFileAndFolder_);
  engine->delegate = nullptr;
  removeFileAndFolder_.reset();
  plan_.clear();
  if (isCancel_) {
    errorString_ = kCancelled;
  } else if (isFailedEraser_) {
    errorString_ = "Some items could not be erased.";
  }
  tell(&FileShareModelListener::listChanged);
  tell(&FileShareModelListener::pageChanged);
  tell(&FileShareModelListener::showEndShred);
}

// Whether an item was erased is what the disk says, not what anybody claims.
void FileShareModel::settleOutcomes(const FileObjs& items) {
  std::map<std::string, std::string> reasons;  // of what was worked on, by path
  for (const auto& item : items) {
    if (item->failStr == "Fail") reasons.emplace(item->url, item->reason);
  }
  const auto reasonFor = [&](const FileObj& item) -> std::string {
    if (!item.reason.empty() && item.failStr == "Fail" && !isExpanded(item)) return item.reason;
    // What kept a folder is what stayed in it, and not the folders between them.
    auto found = reasons.lower_bound(item.url + "/");
    if (found != reasons.end() && isBelow(found->first, item.url)) {
      for (auto next = std::next(found); next != reasons.end(); found = next++) {
        if (!isBelow(next->first, found->first)) break;
      }
      return found->first.substr(item.url.size() + 1) + ": " + found->second;
    }
    if (!item.reason.empty()) return item.reason;
    return isCancel_ ? "stopped before its turn came" : "it is still there";
  };
  for (const auto& item : valueArr_) {
    if (!item->isSelect) continue;
    if (exists(item->url)) {
      item->reason = reasonFor(*item);
      item->failStr = "Failed";
      isFailedEraser_ = isFailedEraser_ || !isCancel_;
    } else {
      item->failStr = "Erased";
      item->reason.clear();
    }
    SystemLog::line("----{}", item->url);
    deleteErrorArr_.push_back(item);
  }
  std::erase_if(valueArr_, [](const auto& item) { return item->isSelect; });
}

// The preference.

int FileShareModel::eraserTimes() const {
  return RemoveFileAndFolder(nullptr).getEraserTimes();
}

void FileShareModel::setEraserTimes(int times) {
  Preferences* preferences = Host::current().preferences.get();
  if (preferences == nullptr) return;
  preferences->setValue(Preferences::kApplicationDomain, "EraserTimes", PropertyList(times));
  if (!preferences->synchronize()) SystemLog::line("The preference EraserTimes cannot be written.");
}

}  // namespace brisko
