#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace brisko {

/// One request to a web address. Certificates are always checked, and nothing but the web is asked.
class WebRequest {
 public:
  enum class Schemes {
    web,    ///< "http" and "https"
    secure  ///< "https"; "http" only to this machine itself, where nobody listens in between
  };

  explicit WebRequest(std::string address) : address_(std::move(address)) {}

  WebRequest& schemes(Schemes schemes);
  /// For the whole of it, from looking the name up to the last byte.
  WebRequest& timeOut(std::chrono::milliseconds timeOut);
  /// Asked several times a second; true ends the request.
  WebRequest& stopWhen(std::function<bool()> stop);

  struct Answer {
    int status = 0;       ///< as the server gave it (200, 404 …); 0 when none came
    std::string failure;  ///< why not all of it came; empty when all did
  };

  /// Hands over the answer's bytes as they come; `take` returns whether it wants more. Blocks. Up
  /// to three redirections are followed, by the same rules.
  Answer get(const std::function<bool(std::string_view)>& take) const;

 private:
  std::string address_;
  Schemes schemes_ = Schemes::secure;
  std::chrono::milliseconds timeOut_{10'000};
  std::function<bool()> stop_;
};

}  // namespace brisko
