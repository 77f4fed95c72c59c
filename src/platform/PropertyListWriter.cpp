#include "PropertyList.h"
#include "RegularFile.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <ctime>

namespace brisko {
namespace {

constexpr std::int64_t kReferenceDate = 978307200;  // 2001-01-01 in seconds since 1970

std::string escaped(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    switch (character) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      default:
        if (byte == 0) break;  // no text can hold it
        if (byte < 0x20 && byte != '\t' && byte != '\n') {
          result += fmt::format("&#{};", byte);
        } else {
          result += character;
        }
    }
  }
  return result;
}

std::string base64(std::string_view bytes) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    std::uint32_t group = 0;
    for (std::size_t j = 0; j < 3; ++j) {
      group = group << 8U | (i + j < bytes.size() ? static_cast<unsigned char>(bytes[i + j]) : 0U);
    }
    const std::size_t digits = std::min<std::size_t>(bytes.size() - i, 3) + 1;
    for (std::size_t j = 0; j < 4; ++j) {
      text += j < digits ? kDigits[group >> (18 - 6 * j) & 0x3FU] : '=';
    }
  }
  return text;
}

std::string isoDate(double seconds) {
  // The four digits of the year bound what can be written.
  const double bounded = std::clamp(std::isfinite(seconds) ? std::floor(seconds) : 0.0,
                                    -63113904000.0, 252423993599.0);
  const std::time_t time = static_cast<std::time_t>(bounded) + kReferenceDate;
  std::tm parts{};
  gmtime_r(&time, &parts);
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", parts.tm_year + 1900, parts.tm_mon + 1,
                     parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec);
}

class Writer {
 public:
  explicit Writer(std::string& text) : text_(text) {}

  void write(const PropertyList& list, std::size_t level) {
    if (list.isDictionary()) return dictionary(list.dictionary(), level);
    if (list.isArray()) return array(list.array(), level);
    line(level, list.scalarXml());
  }

 private:
  void line(std::size_t level, std::string_view content) {
    text_.append(level, '\t').append(content).append("\n");
  }

  void dictionary(const PropertyList::Dictionary& values, std::size_t level) {
    if (values.empty()) return line(level, "<dict/>");
    line(level, "<dict>");
    for (const auto& [key, value] : values) {
      if (value.isNull()) continue;
      line(level + 1, "<key>" + escaped(key) + "</key>");
      write(value, level + 1);
    }
    line(level, "</dict>");
  }

  void array(const PropertyList::Array& values, std::size_t level) {
    if (values.empty()) return line(level, "<array/>");
    line(level, "<array>");
    for (const PropertyList& value : values) {
      if (!value.isNull()) write(value, level + 1);
    }
    line(level, "</array>");
  }

  std::string& text_;
};

}  // namespace

std::string PropertyList::scalarXml() const {
  struct Visitor {
    std::string operator()(std::monostate) const { return {}; }
    std::string operator()(bool value) const { return value ? "<true/>" : "<false/>"; }
    std::string operator()(std::int64_t value) const {
      return fmt::format("<integer>{}</integer>", value);
    }
    std::string operator()(std::uint64_t value) const {
      return fmt::format("<integer>{}</integer>", value);
    }
    std::string operator()(double value) const { return fmt::format("<real>{}</real>", value); }
    std::string operator()(const std::string& value) const {
      return "<string>" + escaped(value) + "</string>";
    }
    std::string operator()(const Data& value) const {
      return "<data>" + base64(value.bytes) + "</data>";
    }
    std::string operator()(Date value) const {
      return "<date>" + isoDate(value.seconds) + "</date>";
    }
    std::string operator()(const Array&) const { return {}; }
    std::string operator()(const Dictionary&) const { return {}; }
  };
  return std::visit(Visitor{}, value_);
}

std::string PropertyList::xml() const {
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
      "<plist version=\"1.0\">\n";
  if (!isNull()) Writer(text).write(*this, 0);
  return text + "</plist>\n";
}

bool PropertyList::writeInPlace(const std::string& path) const {
  const int error = writeFileInPlace(path, xml());
  if (error != 0) SystemLog::line("Cannot write property list {}: {}", path, std::strerror(error));
  return error == 0;
}

}  // namespace brisko
