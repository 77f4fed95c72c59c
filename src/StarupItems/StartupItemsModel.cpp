#include "StartupItemsModel.h"

#include "Dispatch.h"
#include "Host.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <filesystem>
#include <unordered_set>
#include <utility>

namespace brisko {
namespace {

LoginItems& store() {
  return *Host::current().loginItems;
}

// What a link leads to: the link is only a way to it. A desktop entry keeps its own name, because
// many are links to a file that is another one after each update.
std::string resolved(const std::string& path) {
  std::error_code error;
  if (path.ends_with(".desktop")) return path;
  const auto target = std::filesystem::canonical(path, error);
  return error ? path : target.string();
}

}  // namespace

std::string loginItemsReason(int status) {
  switch (status) {
    case LoginItems::dskFulErr:
      return "the disk is full";
    case LoginItems::fnfErr:
      return "it is not there";
    case LoginItems::paramErr:
      return "its entry cannot be understood";
    case LoginItems::permErr:
      return "permission is missing";
    default:
      return fmt::format("error {}", status);
  }
}

StartupItemsModel::StartupItemsModel() = default;

StartupItemsModel::~StartupItemsModel() {
  if (token_ != 0) store().stopObserving(token_);
}

void StartupItemsModel::getAllItmes() {
  if (token_ == 0) token_ = store().observe([this] { loginItemsListDidChange(); });
  updateLoginItemsList();
}

void StartupItemsModel::loginItemsListDidChange() {
  updateLoginItemsList();
}

void StartupItemsModel::updateLoginItemsList() {
  if (isScan_) {
    isStale_ = true;
    return;
  }
  isScan_ = true;
  allItems_.clear();
  if (listener_ != nullptr) listener_->itemsChanged();
  Dispatch::global([this, life = std::weak_ptr<int>(life_)] {
    Reading reading = read();
    Dispatch::mainAsync([this, life, reading = std::move(reading)]() mutable {
      if (!life.expired()) take(std::move(reading));
    });
  });
}

StartupItemsModel::Reading StartupItemsModel::read() {
  Reading reading;
  std::vector<LoginItem> entries;
  std::unordered_set<std::string> seen;
  store().snapshot(entries);
  for (const LoginItem& entry : entries) {
    const std::optional<std::string> path = store().resolve(entry);
    if (!path) continue;
    SystemLog::line("----------------{}", entry.isHidden ? 1 : 0);
    if (!seen.insert(*path).second) continue;
    reading.items.push_back(ASLoginStartItem::loginItem(*path, entry.isHidden));
  }
  reading.switched = store().switchedItems();
  return reading;
}

void StartupItemsModel::take(Reading reading) {
  allItems_ = std::move(reading.items);
  switchedItems_ = std::move(reading.switched);
  isScan_ = false;
  isRead_ = true;
  if (listener_ != nullptr) listener_->itemsChanged();
  // A notice that came while the store was read may be about what was read already, or not.
  if (std::exchange(isStale_, false)) updateLoginItemsList();
}

void StartupItemsModel::finish(int status, const char* what) {
  if (status != LoginItems::noErr) {
    const std::string text = fmt::format("{}: {}.", what, loginItemsReason(status));
    SystemLog::line("{}", text);
    if (listener_ != nullptr) listener_->changeFailed(text);
  }
  updateLoginItemsList();
}

void StartupItemsModel::addButtonAction(const std::string& path) {
  finish(store().insertLast(resolved(path), false), "The login item was not added");
}

void StartupItemsModel::changeEntry(std::size_t row, const char* failure,
                                    const std::function<int(const LoginItem&)>& change) {
  if (row >= allItems_.size()) return;
  std::vector<LoginItem> entries;
  int status = store().snapshot(entries);
  if (status == LoginItems::noErr) {
    status = row < entries.size() ? change(entries[row]) : int{LoginItems::fnfErr};
  }
  finish(status, failure);
}

void StartupItemsModel::removeButtonActoion(std::size_t row) {
  changeEntry(row, "The login item was not removed",
              [](const LoginItem& entry) { return store().remove(entry); });
}

void StartupItemsModel::setHideStar(std::size_t row) {
  if (row >= allItems_.size()) return;
  const bool isHidden = allItems_[row].bIsSelected;
  SystemLog::line("----------------{}", isHidden ? "un select" : "select");
  changeEntry(row, "The login item was not changed",
              [=](const LoginItem& entry) { return store().setHidden(entry, !isHidden); });
}

void StartupItemsModel::setSwitched(std::size_t row, bool isOn) {
  if (row >= switchedItems_.size()) return;
  finish(store().setSwitched(switchedItems_[row], isOn), "The item was not switched");
}

std::string StartupItemsModel::startingFolder() {
  const HostFolders& folders = *Host::current().folders;
  std::error_code error;
  for (const char* folder : {"/Applications", "/usr/share/applications"}) {
    const std::string path = folders.path(folder);
    if (std::filesystem::is_directory(path, error)) return path;
  }
  return folders.home();
}

const char* StartupItemsModel::hideImage(const ASLoginStartItem& item) {
  return item.bIsSelected ? "sel" : "unsel";
}

std::string StartupItemsModel::entryFor(std::size_t row) const {
  std::vector<LoginItem> entries;
  store().snapshot(entries);
  if (row >= entries.size()) return {};
  return store().resolve(entries[row]).value_or(entries[row].identifier);
}

}  // namespace brisko
