#include "TaskTermination.h"

#include <map>
#include <utility>

namespace brisko {
namespace {

std::map<int, TaskTermination::Observer>& observers() {
  static auto* all = new std::map<int, TaskTermination::Observer>;
  return *all;
}

}  // namespace

int TaskTermination::observe(Observer observer) {
  const int token = observers().empty() ? 1 : observers().rbegin()->first + 1;
  observers().emplace(token, std::move(observer));
  return token;
}

void TaskTermination::stopObserving(int token) {
  observers().erase(token);
}

void TaskTermination::post() {
  // An observer may stop observing, itself included, while it is told.
  const auto told = observers();
  for (const auto& [token, observer] : told) {
    if (observers().contains(token)) observer();
  }
}

}  // namespace brisko
