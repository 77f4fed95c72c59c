#include "WebRequest.h"

#include <memory>
#include <utility>

#include <curl/curl.h>

namespace brisko {
namespace {

constexpr long kRedirections = 3;

using Taker = std::function<bool(std::string_view)>;

std::size_t handOver(char* bytes, std::size_t size, std::size_t count, void* taker) {
  const std::string_view part(bytes, size * count);
  return (*static_cast<const Taker*>(taker))(part) ? part.size() : 0;
}

int goesOn(void* stop, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  const auto& asked = *static_cast<const std::function<bool()>*>(stop);
  return asked && asked() ? 1 : 0;
}

std::string hostOf(const std::string& address) {
  const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> url(curl_url(), &curl_url_cleanup);
  char* host = nullptr;
  if (!url || curl_url_set(url.get(), CURLUPART_URL, address.c_str(), 0) != CURLUE_OK ||
      curl_url_get(url.get(), CURLUPART_HOST, &host, 0) != CURLUE_OK) {
    return {};
  }
  const std::unique_ptr<char, decltype(&curl_free)> owned(host, &curl_free);
  return host;
}

bool isThisMachine(const std::string& host) {
  return host == "localhost" || host == "127.0.0.1" || host == "[::1]";
}

}  // namespace

WebRequest& WebRequest::schemes(Schemes schemes) {
  schemes_ = schemes;
  return *this;
}

WebRequest& WebRequest::timeOut(std::chrono::milliseconds timeOut) {
  timeOut_ = timeOut;
  return *this;
}

WebRequest& WebRequest::stopWhen(std::function<bool()> stop) {
  stop_ = std::move(stop);
  return *this;
}

WebRequest::Answer WebRequest::get(const Taker& take) const {
  static const bool isReady = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> request(
      isReady ? curl_easy_init() : nullptr, &curl_easy_cleanup);
  const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers(
      curl_slist_append(nullptr, "Cache-Control: no-cache"), &curl_slist_free_all);
  if (!request || !headers) return {0, "the network library does not start"};
  const bool isPlainAllowed = schemes_ == Schemes::web || isThisMachine(hostOf(address_));
  const auto set = [&](CURLoption option, auto value) {
    curl_easy_setopt(request.get(), option, value);
  };
  set(CURLOPT_URL, address_.c_str());
  set(CURLOPT_PROTOCOLS_STR, isPlainAllowed ? "http,https" : "https");
  set(CURLOPT_REDIR_PROTOCOLS_STR, schemes_ == Schemes::web ? "http,https" : "https");
  set(CURLOPT_FOLLOWLOCATION, 1L);
  set(CURLOPT_MAXREDIRS, kRedirections);
  set(CURLOPT_HTTPHEADER, headers.get());
  set(CURLOPT_TIMEOUT_MS, static_cast<long>(timeOut_.count()));
  set(CURLOPT_NOSIGNAL, 1L);
  set(CURLOPT_WRITEFUNCTION, handOver);
  set(CURLOPT_WRITEDATA, &take);
  set(CURLOPT_NOPROGRESS, 0L);
  set(CURLOPT_XFERINFOFUNCTION, goesOn);
  set(CURLOPT_XFERINFODATA, &stop_);
  const CURLcode code = curl_easy_perform(request.get());
  long status = 0;
  curl_easy_getinfo(request.get(), CURLINFO_RESPONSE_CODE, &status);
  return {static_cast<int>(status), code == CURLE_OK ? "" : curl_easy_strerror(code)};
}

}  // namespace brisko
