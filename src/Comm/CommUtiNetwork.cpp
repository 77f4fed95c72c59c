#include "CommUti.h"
#include "ZKLinkUrl.h"

#include <cstddef>
#include <memory>
#include <string>

#include <curl/curl.h>

namespace brisko {
namespace {

constexpr long kTimeOut = 5000;  // milliseconds

// The first bytes answer the question; not taking them ends the transfer.
std::size_t noteData(char*, std::size_t size, std::size_t count, void* anyData) {
  if (size * count > 0) *static_cast<bool*>(anyData) = true;
  return 0;
}

}  // namespace

bool CommUti::isCanBeUseNetWork() {
  static const bool isReady = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  const auto address = ZKLinkUrl::GetUrl("HomeURL");
  if (!isReady || !address) return false;
  const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> request(curl_easy_init(),
                                                                    &curl_easy_cleanup);
  const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers(
      curl_slist_append(nullptr, "Cache-Control: no-cache"), &curl_slist_free_all);
  if (!request || !headers) return false;
  bool anyData = false;
  curl_easy_setopt(request.get(), CURLOPT_URL, address->c_str());
  curl_easy_setopt(request.get(), CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(request.get(), CURLOPT_HTTPHEADER, headers.get());
  curl_easy_setopt(request.get(), CURLOPT_TIMEOUT_MS, kTimeOut);
  curl_easy_setopt(request.get(), CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(request.get(), CURLOPT_WRITEFUNCTION, noteData);
  curl_easy_setopt(request.get(), CURLOPT_WRITEDATA, &anyData);
  curl_easy_perform(request.get());
  return anyData;
}

}  // namespace brisko
