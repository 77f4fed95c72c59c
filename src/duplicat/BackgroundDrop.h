#pragma once

#include "Dispatch.h"

#include <memory>
#include <utility>

namespace brisko {

/// Lets go of something large away from the main thread: to give back the memory of a hundred
/// thousand groups takes longer than a frame.
template <typename T>
void dropInBackground(std::shared_ptr<T> dropped) {
  if (dropped != nullptr) Dispatch::global([last = std::move(dropped)] {});
}

}  // namespace brisko
