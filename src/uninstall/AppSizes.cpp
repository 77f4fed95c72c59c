#include "AppSizes.h"

#include "CommUti.h"
#include "Dispatch.h"
#include "InstalledApplications.h"
#include "NSFileManager.h"

#include <atomic>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

namespace brisko {
namespace {

// A large tree is walked by several threads anyway; more items at a time would only make the disk
// jump.
constexpr int kWorkers = 3;

std::uint64_t bytesOf(const AMAppItem& item, const std::atomic<bool>& cancel) {
  const auto measure = [&](const std::string& path) {
    const FSRef reference = NSFileManager::convertStringToFSRef(path);
    return CommUti::sizeOfFileRef(reference, &cancel);
  };
  // An entry of a review is one item; in the list a program of several files counts as a whole.
  const bool isWhole =
      item.host && !item.host->files.empty() && item.role == AMAppItem::Role::package;
  if (!isWhole) return measure(item.path);
  std::uint64_t sum = 0;
  for (const std::string& path : item.host->files)
    sum += measure(path);
  return sum;
}

}  // namespace

struct AppSizes::Queue {
  std::atomic<bool> cancel = false;
  AppSizes* owner = nullptr;  // the main thread's
  std::mutex mutex;
  std::deque<AppItem> waiting;
  int workers = 0;
  std::vector<std::pair<AppItem, std::uint64_t>> measured;
  bool isTold = false;

  static void work(const std::shared_ptr<Queue>& queue);
  AppItem next();
  bool add(AppItem item, std::uint64_t bytes);
};

AppItem AppSizes::Queue::next() {
  const std::lock_guard lock(mutex);
  if (waiting.empty() || cancel) {
    --workers;
    return nullptr;
  }
  AppItem item = std::move(waiting.front());
  waiting.pop_front();
  return item;
}

// True when the main thread is to be told.
bool AppSizes::Queue::add(AppItem item, std::uint64_t bytes) {
  const std::lock_guard lock(mutex);
  measured.emplace_back(std::move(item), bytes);
  return !std::exchange(isTold, true);
}

void AppSizes::Queue::work(const std::shared_ptr<Queue>& queue) {
  while (AppItem item = queue->next()) {
    const std::uint64_t bytes = bytesOf(*item, queue->cancel);
    if (!queue->add(std::move(item), bytes)) continue;
    Dispatch::mainAsync([queue] {
      if (queue->owner != nullptr) queue->owner->take();
    });
  }
}

AppSizes::AppSizes(Done done) : done_(std::move(done)), queue_(std::make_shared<Queue>()) {
  queue_->owner = this;
}

AppSizes::~AppSizes() {
  queue_->owner = nullptr;
  queue_->cancel = true;
}

void AppSizes::ask(const AppItem& item, bool isInSight) {
  if (std::exchange(item->bIsGetSize, true)) return;
  ++pending_;
  const std::lock_guard lock(queue_->mutex);
  if (isInSight) {
    queue_->waiting.push_front(item);
  } else {
    queue_->waiting.push_back(item);
  }
  if (queue_->workers == kWorkers) return;
  ++queue_->workers;
  Dispatch::global([queue = queue_] { Queue::work(queue); });
}

void AppSizes::take() {
  std::vector<std::pair<AppItem, std::uint64_t>> measured;
  {
    const std::lock_guard lock(queue_->mutex);
    measured.swap(queue_->measured);
    queue_->isTold = false;
  }
  AppItems items;
  for (auto& [item, bytes] : measured) {
    item->setBytes(bytes);
    items.push_back(std::move(item));
  }
  pending_ -= items.size();
  if (done_) done_(items);
}

}  // namespace brisko
