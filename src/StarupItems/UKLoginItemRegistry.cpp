#include "UKLoginItemRegistry.h"

#include "FileURL.h"
#include "LoginItems.h"
#include "SystemLog.h"

#include <thread>
#include <utility>

namespace brisko {
namespace {

constexpr int kTries = 61;

UKLoginItemRegistry::Wait& currentWait() {
  static UKLoginItemRegistry::Wait wait = [](std::chrono::milliseconds time) {
    std::this_thread::sleep_for(time);
  };
  return wait;
}

}  // namespace

UKLoginItemRegistry::Wait UKLoginItemRegistry::setWait(Wait wait) {
  return std::exchange(currentWait(), std::move(wait));
}

std::optional<std::vector<LoginItemRecord>> UKLoginItemRegistry::allLoginItems() {
  std::vector<LoginItemRecord> items;
  for (int tried = 1;; ++tried) {
    const int status = LIAECopyLoginItems(items);
    if (status == LoginItems::noErr) return items;
    if (status != LoginItems::errAETimeout) {
      SystemLog::line("Couldn't list login items error {}", status);
      return std::nullopt;
    }
    SystemLog::line("Get login items error {} occur.", status);
    if (tried == kTries) {
      SystemLog::line("Get login items error {} and timeout.", status);
      return std::nullopt;
    }
    currentWait()(std::chrono::seconds(1));
  }
}

bool UKLoginItemRegistry::addLoginItemWithURL(const std::string& url, bool hideIt) {
  const int status = LIAEAddURLAtEnd(url, hideIt);
  if (status != LoginItems::noErr) SystemLog::line("Couldn't add login item error {}", status);
  return status == LoginItems::noErr;
}

bool UKLoginItemRegistry::addLoginItemWithPath(const std::string& path, bool hideIt) {
  return addLoginItemWithURL(fileURL(path), hideIt);
}

bool UKLoginItemRegistry::removeLoginItemAtIndex(std::size_t index) {
  const int status = LIAERemove(index);
  if (status != LoginItems::noErr) SystemLog::line("Couldn't remove login item error {}", status);
  return status == LoginItems::noErr;
}

int UKLoginItemRegistry::indexForLoginItemWithURL(const std::string& url) {
  const auto items = allLoginItems();
  for (std::size_t index = 0; items && index < items->size(); ++index) {
    if ((*items)[index].URL == url) return static_cast<int>(index);
  }
  return -1;
}

int UKLoginItemRegistry::indexForLoginItemWithPath(const std::string& path) {
  return indexForLoginItemWithURL(fileURL(path));
}

bool UKLoginItemRegistry::removeLoginItemWithURL(const std::string& url) {
  const int index = indexForLoginItemWithURL(url);
  return index >= 0 && removeLoginItemAtIndex(static_cast<std::size_t>(index));
}

bool UKLoginItemRegistry::removeLoginItemWithPath(const std::string& path) {
  return removeLoginItemWithURL(fileURL(path));
}

}  // namespace brisko
