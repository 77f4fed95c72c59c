#pragma once

#include "Dispatch.h"

#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace brisko {

/// Who is to be told of something that is noticed on another thread. `Observer` is a std::function
/// without a result; it is called on the main queue. Usable from every thread.
///
/// An observer is not called any more once `remove` has returned on the main thread, and none is
/// once the list is gone.
template <typename Observer>
class ObserverList {
 public:
  /// Returns the token that takes the observer out again.
  int add(Observer observer) {
    const std::lock_guard lock(shared_->mutex);
    const int token = shared_->nextToken++;
    shared_->byToken.emplace(token, std::move(observer));
    return token;
  }

  /// False for a token that is not in it (any more).
  bool remove(int token) {
    const std::lock_guard lock(shared_->mutex);
    return shared_->byToken.erase(token) != 0;
  }

  bool isEmpty() const {
    const std::lock_guard lock(shared_->mutex);
    return shared_->byToken.empty();
  }

  /// Queues a call of each observer that is in the list now, in the order in which they came.
  template <typename... Arguments>
  void tell(const Arguments&... arguments) const {
    std::vector<int> tokens;
    {
      const std::lock_guard lock(shared_->mutex);
      for (const auto& [token, observer] : shared_->byToken)
        tokens.push_back(token);
    }
    Dispatch::mainAsync([list = std::weak_ptr(shared_), tokens = std::move(tokens), arguments...] {
      for (const int token : tokens) {
        if (const Observer observer = found(list.lock(), token)) observer(arguments...);
      }
    });
  }

 private:
  struct Shared {
    std::mutex mutex;
    std::map<int, Observer> byToken;
    int nextToken = 1;
  };

  // Looked up one by one: an observer may take out another one.
  static Observer found(const std::shared_ptr<Shared>& list, int token) {
    if (!list) return nullptr;
    const std::lock_guard lock(list->mutex);
    const auto at = list->byToken.find(token);
    return at == list->byToken.end() ? nullptr : at->second;
  }

  std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
};

}  // namespace brisko
