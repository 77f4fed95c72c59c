#include "AppSearch.h"

#include "AppScanner.h"
#include "Dispatch.h"
#include "HostApplications.h"

#include <atomic>
#include <chrono>
#include <utility>

namespace brisko {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kBatch{30};

}  // namespace

/// What the background holds of a search.
struct AppSearch::Shared {
  std::atomic<bool> stop = false;
  bool isHeard = true;  // the main thread's
  std::vector<Part> parts;
  Found found;
  Ended ended;

  static void run(const std::shared_ptr<Shared>& shared);
  static void hand(const std::shared_ptr<Shared>& shared, int type, AppItems& batch);
};

void AppSearch::Shared::hand(const std::shared_ptr<Shared>& shared, int type, AppItems& batch) {
  if (batch.empty()) return;
  Dispatch::mainAsync([shared, type, items = std::exchange(batch, {})]() mutable {
    if (shared->isHeard) shared->found(type, std::move(items));
  });
}

void AppSearch::Shared::run(const std::shared_ptr<Shared>& shared) {
  const AppScanner scanner(shared->stop);
  for (const auto& [type, folders] : shared->parts) {
    AppItems batch;
    auto lastHanded = Clock::now();
    for (const std::string& folder : folders) {
      scanner.search(type, folder, [&, of = type](AppItem item) {
        batch.push_back(std::move(item));
        if (Clock::now() - lastHanded < kBatch) return;
        lastHanded = Clock::now();
        hand(shared, of, batch);
      });
    }
    hand(shared, type, batch);
    if (type != 0 || shared->stop) continue;
    AppItems host = hostApplicationItems();
    hand(shared, type, host);
  }
  Dispatch::mainAsync([shared] {
    if (shared->isHeard) shared->ended();
  });
}

AppSearch::AppSearch(std::vector<Part> parts, Found found, Ended ended)
    : shared_(std::make_shared<Shared>()) {
  shared_->parts = std::move(parts);
  shared_->found = std::move(found);
  shared_->ended = std::move(ended);
  Dispatch::global([shared = shared_] { Shared::run(shared); });
}

AppSearch::~AppSearch() {
  shared_->stop = true;
  shared_->isHeard = false;
}

}  // namespace brisko
