#include "CommUti.h"
#include "WebRequest.h"
#include "ZKLinkUrl.h"

#include <chrono>

namespace brisko {

bool CommUti::isCanBeUseNetWork(const std::function<bool()>& stop) {
  const auto address = ZKLinkUrl::GetUrl("HomeURL");
  if (!address) return false;
  bool anyData = false;
  // The first bytes answer the question; not taking more ends the transfer.
  WebRequest(*address)
      .schemes(WebRequest::Schemes::web)
      .timeOut(std::chrono::seconds(5))
      .stopWhen(stop)
      .get([&](std::string_view bytes) {
        anyData = anyData || !bytes.empty();
        return false;
      });
  return anyData;
}

}  // namespace brisko
