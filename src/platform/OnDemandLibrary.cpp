#include "OnDemandLibrary.h"

#include "SystemLog.h"

#include <cstdlib>

#include <dlfcn.h>

namespace brisko {

bool OnDemandLibrary::isThere() {
  std::call_once(once_, [this] {
    handle_ = ::dlopen(name_, RTLD_NOW | RTLD_LOCAL);
    if (handle_ == nullptr) SystemLog::line("A library cannot be loaded: {}", ::dlerror());
  });
  return handle_ != nullptr;
}

void* OnDemandLibrary::address(const char* function) {
  void* found = isThere() ? ::dlsym(handle_, function) : nullptr;
  if (found != nullptr) return found;
  SystemLog::line("{} has no function {}.", name_, function);
  std::abort();
}

}  // namespace brisko
