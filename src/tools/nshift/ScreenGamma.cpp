#include "ScreenGamma.h"

#include <cmath>
#include <cstdlib>
#include <memory>

#include <xcb/randr.h>

namespace brisko {
namespace {

struct Freer {
  void operator()(void* memory) const { std::free(memory); }
};
template <typename Kind>
using Reply = std::unique_ptr<Kind, Freer>;

struct Disconnecter {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using Connection = std::unique_ptr<xcb_connection_t, Disconnecter>;

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

std::vector<std::uint16_t> ramp(std::size_t size, double top) {
  std::vector<std::uint16_t> steps(size);
  for (std::size_t i = 0; i < size; ++i) {
    const double place = size > 1 ? static_cast<double>(i) / static_cast<double>(size - 1) : 1;
    steps[i] = static_cast<std::uint16_t>(std::lround(65535 * place * top));
  }
  return steps;
}

/// True when the screen has a ramp and took the new one.
bool setScreen(xcb_connection_t* connection, xcb_randr_crtc_t screen, double warmth) {
  const Reply<xcb_randr_get_crtc_gamma_size_reply_t> size(xcb_randr_get_crtc_gamma_size_reply(
      connection, xcb_randr_get_crtc_gamma_size(connection, screen), nullptr));
  if (!size || size->size == 0) return false;
  const GammaRamps ramps = GammaRamps::warm(size->size, warmth);
  const xcb_void_cookie_t sent = xcb_randr_set_crtc_gamma_checked(
      connection, screen, size->size, ramps.red.data(), ramps.green.data(), ramps.blue.data());
  const Reply<xcb_generic_error_t> error(xcb_request_check(connection, sent));
  if (error) return false;
  // A server without the ability answers as if it had done it.
  const Reply<xcb_randr_get_crtc_gamma_reply_t> now(xcb_randr_get_crtc_gamma_reply(
      connection, xcb_randr_get_crtc_gamma(connection, screen), nullptr));
  if (!now || xcb_randr_get_crtc_gamma_blue_length(now.get()) != size->size) return false;
  // Hardware rounds, but not by much.
  constexpr int kTolerance = 512;
  const int top = xcb_randr_get_crtc_gamma_blue(now.get())[size->size - 1];
  return std::abs(top - ramps.blue.back()) <= kTolerance;
}

}  // namespace

GammaRamps GammaRamps::warm(std::size_t size, double warmth) {
  constexpr double kGreen = 0.34;  // what the white of 2700 K lacks of each
  constexpr double kBlue = 0.66;
  return {ramp(size, 1), ramp(size, 1 - kGreen * warmth), ramp(size, 1 - kBlue * warmth)};
}

bool ScreenGamma::set(double warmth, std::string& reason) {
  if (!isSet("DISPLAY") || isSet("WAYLAND_DISPLAY")) {
    reason = "there is no X display whose colours could be changed";
    return false;
  }
  int number = 0;
  const Connection connection(xcb_connect(nullptr, &number));
  if (xcb_connection_has_error(connection.get()) != 0) {
    reason = "the X display does not answer";
    return false;
  }
  reason = "the X display cannot change its colours";
  const auto* extension = xcb_get_extension_data(connection.get(), &xcb_randr_id);
  if (extension == nullptr || extension->present == 0) return false;
  const Reply<xcb_randr_query_version_reply_t> version(xcb_randr_query_version_reply(
      connection.get(), xcb_randr_query_version(connection.get(), 1, 3), nullptr));
  bool isDone = false;
  for (auto each = xcb_setup_roots_iterator(xcb_get_setup(connection.get())); each.rem > 0;
       xcb_screen_next(&each)) {
    const Reply<xcb_randr_get_screen_resources_current_reply_t> resources(
        xcb_randr_get_screen_resources_current_reply(
            connection.get(),
            xcb_randr_get_screen_resources_current(connection.get(), each.data->root), nullptr));
    if (!resources) continue;
    const xcb_randr_crtc_t* screens = xcb_randr_get_screen_resources_current_crtcs(resources.get());
    const int count = xcb_randr_get_screen_resources_current_crtcs_length(resources.get());
    for (int i = 0; i < count; ++i)
      isDone = setScreen(connection.get(), screens[i], warmth) || isDone;
  }
  return isDone;
}

}  // namespace brisko
