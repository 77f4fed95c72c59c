#include "StartupItemsModel.h"

#include "Dispatch.h"
#include "Host.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace brisko {
namespace {

LoginItems& store() {
  return *Host::current().loginItems;
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
  store().snapshot(entries);
  for (const LoginItem& entry : entries) {
    const std::optional<std::string> path = store().resolve(entry);
    if (!path) continue;
    SystemLog::line("----------------{}", entry.isHidden ? 1 : 0);
    const bool isKnown = std::any_of(reading.items.begin(), reading.items.end(),
                                     [&](const auto& item) { return item.path == *path; });
    if (!isKnown) reading.items.push_back(ASLoginStartItem::loginItem(*path, entry.isHidden));
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
  finish(store().insertLast(path, false), "The login item was not added");
}

void StartupItemsModel::removeButtonActoion(std::size_t row) {
  std::vector<LoginItem> entries;
  store().snapshot(entries);
  if (row < entries.size()) {
    finish(store().remove(entries[row]), "The login item was not removed");
  }
}

void StartupItemsModel::setHideStar(std::size_t row) {
  if (row >= allItems_.size()) return;
  const bool isHidden = allItems_[row].bIsSelected;
  SystemLog::line("----------------{}", isHidden ? "un select" : "select");
  std::vector<LoginItem> entries;
  store().snapshot(entries);
  if (row < entries.size()) {
    finish(store().setHidden(entries[row], !isHidden), "The login item was not changed");
  }
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
