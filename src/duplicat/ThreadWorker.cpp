#include "ThreadWorker.h"

#include "Dispatch.h"

#include <utility>

namespace brisko {

std::unique_ptr<ThreadWorker> ThreadWorker::workOn(std::function<void(const ThreadWorker&)> work,
                                                   std::function<void()> didEnd) {
  std::unique_ptr<ThreadWorker> worker(new ThreadWorker);
  worker->didEnd_ = std::make_shared<std::function<void()>>(std::move(didEnd));
  worker->thread_ = std::thread(
      [self = worker.get(), work = std::move(work), end = std::weak_ptr(worker->didEnd_)] {
        work(*self);
        Dispatch::mainAsync([end] {
          // Moved out first: what it does may destroy the worker.
          if (const auto alive = end.lock()) std::exchange(*alive, nullptr)();
        });
      });
  return worker;
}

ThreadWorker::~ThreadWorker() {
  didEnd_.reset();
  thread_.join();
}

}  // namespace brisko
