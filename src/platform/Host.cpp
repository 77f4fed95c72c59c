#include "Host.h"

#include <utility>

namespace brisko {
namespace {

std::unique_ptr<Host>& installed() {
  // Never destroyed: a worker may still use a service while the process ends.
  static auto* host = new std::unique_ptr<Host>;
  return *host;
}

}  // namespace

Host& Host::current() {
  static const bool made = [] {
    if (!installed()) installed() = makeHost({});
    return true;
  }();
  static_cast<void>(made);
  return *installed();
}

std::unique_ptr<Host> Host::install(std::unique_ptr<Host> host) {
  std::swap(installed(), host);
  return host;
}

}  // namespace brisko
