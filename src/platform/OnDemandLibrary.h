#pragma once

#include <atomic>
#include <mutex>

namespace brisko {

/// A shared library of the system that is loaded by the first call of one of its functions rather
/// than with the program: most runs need none of them, and each would pay for all, with those that
/// they need in turn, in time to start and in memory. Once loaded it stays. Any thread.
class OnDemandLibrary {
 public:
  /// `name`: of the file, with the version of its interface ("libmount.so.1").
  constexpr explicit OnDemandLibrary(const char* name) : name_(name) {}
  OnDemandLibrary(const OnDemandLibrary&) = delete;
  OnDemandLibrary& operator=(const OnDemandLibrary&) = delete;

  /// Loads it. False, with one line in the log, when it cannot be loaded; to be asked before the
  /// first call.
  bool isThere();
  /// Of the function. Ends the program when there is none: a caller cannot go on with nothing.
  void* address(const char* function);

 private:
  const char* name_;
  std::once_flag once_;
  void* handle_ = nullptr;
};

/// One function of such a library, called as if it were the function. `Pointer`: its type, as a
/// pointer.
template <typename Pointer>
class OnDemandFunction {
 public:
  constexpr OnDemandFunction(OnDemandLibrary& library, const char* name)
      : library_(library), name_(name) {}

  // Not explicit: through it the object is called, with further arguments too where the function
  // takes any number.
  operator Pointer() const {  // NOLINT(google-explicit-constructor)
    void* address = address_.load(std::memory_order_relaxed);
    if (address == nullptr) {
      address = library_.address(name_);
      address_.store(address, std::memory_order_relaxed);
    }
    return reinterpret_cast<Pointer>(address);
  }

 private:
  OnDemandLibrary& library_;
  const char* name_;
  mutable std::atomic<void*> address_ = nullptr;
};

}  // namespace brisko

/// Inside a namespace: the library's `function` under its own name, so that calls read as ever and
/// one that was not declared does not link.
#define BRISKO_ON_DEMAND(library, function)                                 \
  inline constinit const OnDemandFunction<decltype(&::function)> function { \
    library, #function                                                      \
  }
