#include "Host.h"

#include <mutex>
#include <utility>

namespace brisko {
namespace {

std::unique_ptr<Host>& installed() {
  // Never destroyed: a worker may still use a service while the process ends.
  static auto* host = new std::unique_ptr<Host>;
  return *host;
}

std::mutex& installation() {
  static auto* mutex = new std::mutex;
  return *mutex;
}

}  // namespace

Host& Host::current() {
  const std::lock_guard lock(installation());
  // Also when a host was taken out again for which there was none before.
  if (!installed()) installed() = makeHost({});
  return *installed();
}

std::unique_ptr<Host> Host::install(std::unique_ptr<Host> host) {
  const std::lock_guard lock(installation());
  std::swap(installed(), host);
  return host;
}

}  // namespace brisko
