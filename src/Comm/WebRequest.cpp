#include "WebRequest.h"

#include "OnDemandLibrary.h"

#include <memory>
#include <utility>

#include <curl/curl.h>

namespace brisko {
namespace {

constexpr long kRedirections = 3;

using Taker = std::function<bool(std::string_view)>;

// It needs forty others in turn.
constinit OnDemandLibrary libcurl{"libcurl.so.4"};
BRISKO_ON_DEMAND(libcurl, curl_easy_cleanup);
BRISKO_ON_DEMAND(libcurl, curl_easy_getinfo);
BRISKO_ON_DEMAND(libcurl, curl_easy_init);
BRISKO_ON_DEMAND(libcurl, curl_easy_perform);
BRISKO_ON_DEMAND(libcurl, curl_easy_setopt);
BRISKO_ON_DEMAND(libcurl, curl_easy_strerror);
BRISKO_ON_DEMAND(libcurl, curl_global_init);
BRISKO_ON_DEMAND(libcurl, curl_slist_append);
BRISKO_ON_DEMAND(libcurl, curl_slist_free_all);

bool curlIsReady() {
  static const bool isReady =
      libcurl.isThere() && curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  return isReady;
}

struct Release {
  void operator()(CURL* request) const { curl_easy_cleanup(request); }
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

std::size_t handOver(char* bytes, std::size_t size, std::size_t count, void* taker) {
  const std::string_view part(bytes, size * count);
  return (*static_cast<const Taker*>(taker))(part) ? part.size() : 0;
}

int goesOn(void* stop, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  const auto& asked = *static_cast<const std::function<bool()>*>(stop);
  return asked && asked() ? 1 : 0;
}

/// The host in "scheme://host:port/…"; empty for what names an account, which nothing here needs.
std::string hostOf(const std::string& address) {
  const std::size_t begin = address.find("://");
  if (begin == std::string::npos) return {};
  const std::string authority =
      address.substr(begin + 3, address.find_first_of("/?#\\", begin + 3) - begin - 3);
  if (authority.find('@') != std::string::npos) return {};
  if (authority.starts_with('[')) return authority.substr(0, authority.find(']') + 1);
  return authority.substr(0, authority.find(':'));
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
  if (!curlIsReady()) return {0, "the network library cannot be used"};
  const std::unique_ptr<CURL, Release> request(curl_easy_init());
  const std::unique_ptr<curl_slist, Release> headers(
      curl_slist_append(nullptr, "Cache-Control: no-cache"));
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
  set(CURLOPT_WRITEFUNCTION, &handOver);
  set(CURLOPT_WRITEDATA, &take);
  set(CURLOPT_NOPROGRESS, 0L);
  set(CURLOPT_XFERINFOFUNCTION, &goesOn);
  set(CURLOPT_XFERINFODATA, &stop_);
  const CURLcode code = curl_easy_perform(request.get());
  long status = 0;
  curl_easy_getinfo(request.get(), CURLINFO_RESPONSE_CODE, &status);
  return {static_cast<int>(status), code == CURLE_OK ? "" : curl_easy_strerror(code)};
}

}  // namespace brisko
