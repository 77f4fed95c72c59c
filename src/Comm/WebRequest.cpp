#include "WebRequest.h"

#include <memory>
#include <utility>

#include <curl/curl.h>
#include <dlfcn.h>

namespace brisko {
namespace {

constexpr long kRedirections = 3;

using Taker = std::function<bool(std::string_view)>;

/// The library that speaks to the web. It and the forty that it needs are loaded at the first
/// request: most commands make none, and each would pay eight megabytes for it.
class CurlLibrary {
 public:
  /// Null when it is missing or does not start.
  static const CurlLibrary* get() {
    static const CurlLibrary library;
    return library.isReady_ ? &library : nullptr;
  }

  decltype(&::curl_easy_init) easyInit = nullptr;
  decltype(&::curl_easy_cleanup) easyCleanup = nullptr;
  decltype(&::curl_easy_setopt) easySetopt = nullptr;
  decltype(&::curl_easy_getinfo) easyGetinfo = nullptr;
  decltype(&::curl_easy_perform) easyPerform = nullptr;
  decltype(&::curl_easy_strerror) easyStrerror = nullptr;
  decltype(&::curl_slist_append) slistAppend = nullptr;
  decltype(&::curl_slist_free_all) slistFreeAll = nullptr;

 private:
  CurlLibrary() : handle_(::dlopen("libcurl.so.4", RTLD_NOW | RTLD_LOCAL)) {
    decltype(&::curl_global_init) globalInit = nullptr;
    isReady_ = handle_ != nullptr && find("curl_easy_init", easyInit) &&
               find("curl_easy_cleanup", easyCleanup) && find("curl_easy_setopt", easySetopt) &&
               find("curl_easy_getinfo", easyGetinfo) && find("curl_easy_perform", easyPerform) &&
               find("curl_easy_strerror", easyStrerror) && find("curl_slist_append", slistAppend) &&
               find("curl_slist_free_all", slistFreeAll) && find("curl_global_init", globalInit) &&
               globalInit(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  }

  template <typename Function>
  bool find(const char* name, Function& function) {
    function = reinterpret_cast<Function>(::dlsym(handle_, name));
    return function != nullptr;
  }

  void* handle_;
  bool isReady_ = false;
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
  const CurlLibrary* curl = CurlLibrary::get();
  if (curl == nullptr) return {0, "the network library cannot be used"};
  const std::unique_ptr<CURL, decltype(curl->easyCleanup)> request(curl->easyInit(),
                                                                   curl->easyCleanup);
  const std::unique_ptr<curl_slist, decltype(curl->slistFreeAll)> headers(
      curl->slistAppend(nullptr, "Cache-Control: no-cache"), curl->slistFreeAll);
  if (!request || !headers) return {0, "the network library does not start"};
  const bool isPlainAllowed = schemes_ == Schemes::web || isThisMachine(hostOf(address_));
  const auto set = [&](CURLoption option, auto value) {
    curl->easySetopt(request.get(), option, value);
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
  const CURLcode code = curl->easyPerform(request.get());
  long status = 0;
  curl->easyGetinfo(request.get(), CURLINFO_RESPONSE_CODE, &status);
  return {static_cast<int>(status), code == CURLE_OK ? "" : curl->easyStrerror(code)};
}

}  // namespace brisko
