#include "PropertyListGuard.h"

#include <algorithm>
#include <array>
#include <vector>

namespace brisko {
namespace {

// Containers first.
constexpr std::array<std::string_view, 11> kElements = {
    "plist", "dict", "array", "key", "string", "integer", "real", "date", "data", "true", "false"};
constexpr std::size_t kContainers = 3;
constexpr std::size_t kKey = 3;

constexpr std::string_view kBlanks = " \t\r\n";

class XmlScan {
 public:
  explicit XmlScan(std::string_view bytes) : rest_(bytes) {
    if (rest_.starts_with("\xEF\xBB\xBF")) rest_.remove_prefix(3);
  }

  std::optional<std::string> fault() {
    while (!rest_.empty() && fault_.empty()) {
      takeText(std::min(rest_.find('<'), rest_.size()));
      if (fault_.empty() && !rest_.empty()) takeMarkup();
    }
    if (fault_.empty() && (!open_.empty() || !sawElement_)) fault_ = "it ends too early";
    if (fault_.empty()) return std::nullopt;
    return fault_;
  }

 private:
  bool isInText() const { return !open_.empty() && open_.back().element >= kContainers; }

  void takeText(std::size_t length) {
    const std::string_view text = rest_.substr(0, length);
    rest_.remove_prefix(length);
    if (text.find('\0') != std::string_view::npos) {
      fault_ = "it contains a zero byte";
    } else if (isInText()) {
      textBytes_ += text.size();
      entities_ += static_cast<std::uint64_t>(std::count(text.begin(), text.end(), '&'));
      if (entities_ * textBytes_ > PropertyListBounds::kEntityMoves) {
        fault_ = "a text has too many entities";
      }
    } else if (text.find_first_not_of(kBlanks) != std::string_view::npos) {
      fault_ = "there is text between its elements";
    }
  }

  void takeMarkup() {
    if (rest_.starts_with("<!--")) {
      takeThrough("-->", 4, false);
    } else if (rest_.starts_with("<![CDATA[") && isInText()) {
      textBytes_ += takeThrough("]]>", 9, false).size();
    } else if (rest_.starts_with("<?") && !isInText()) {
      takeThrough("?>", 1, true);
    } else if (rest_.starts_with("<!DOCTYPE") && !sawElement_) {
      if (takeThrough(">", 9, true).find('[') != std::string_view::npos) {
        fault_ = "it declares a document type of its own";
      }
    } else if (rest_.starts_with("</")) {
      close(takeThrough(">", 2, false));
    } else {
      open(takeThrough(">", 1, true));
    }
  }

  // What stands between the first `skip` bytes and `end`. With `quotes`, a quoted `end` is refused
  // rather than skipped: no honest list has one.
  std::string_view takeThrough(std::string_view end, std::size_t skip, bool quotes) {
    const std::size_t at = rest_.find(end, skip);
    if (at == std::string_view::npos) {
      fault_ = "a tag does not end";
      return {};
    }
    const std::string_view inside = rest_.substr(skip, at - skip);
    rest_.remove_prefix(at + end.size());
    const bool odd = std::count(inside.begin(), inside.end(), '"') % 2 != 0;
    if (inside.find('\0') != std::string_view::npos || (quotes && odd)) {
      fault_ = "a tag is broken";
    }
    return inside;
  }

  void open(std::string_view tag) {
    const bool isClosed = tag.ends_with('/');
    const std::string_view name = tag.substr(0, tag.find_first_of(" \t\r\n/"));
    const auto found = std::find(kElements.begin(), kElements.end(), name);
    if (!fault_.empty()) return;
    if (found == kElements.end() || tag.find('<') != std::string_view::npos || isInText()) {
      fault_ = "an element is unknown or misplaced";
      return;
    }
    sawElement_ = true;
    textBytes_ = entities_ = 0;
    if (++values_ > PropertyListBounds::kValues) fault_ = "it has too many values";
    const auto element = static_cast<std::size_t>(found - kElements.begin());
    if (element == kKey && !open_.empty()) countKey();
    if (isClosed) return;
    open_.push_back({element, 0});
    if (open_.size() > PropertyListBounds::kLevels + 1) fault_ = "it is nested too deep";
  }

  void countKey() {
    keyPairs_ += 2 * open_.back().keys++ + 1;
    if (keyPairs_ > PropertyListBounds::kKeyPairs) fault_ = "it has too many keys";
  }

  void close(std::string_view tag) {
    const std::string_view name = tag.substr(0, tag.find_last_not_of(kBlanks) + 1);
    if (!fault_.empty()) return;
    if (open_.empty() || kElements[open_.back().element] != name) {
      fault_ = "its tags do not match";
      return;
    }
    open_.pop_back();
  }

  std::string_view rest_;
  std::string fault_;
  struct Open {
    std::size_t element = 0;
    std::uint64_t keys = 0;
  };
  std::vector<Open> open_;
  bool sawElement_ = false;
  std::uint64_t values_ = 0;
  std::uint64_t keyPairs_ = 0;
  std::uint64_t textBytes_ = 0;
  std::uint64_t entities_ = 0;
};

}  // namespace

std::optional<std::string> xmlPropertyListFault(std::string_view bytes) {
  return XmlScan(bytes).fault();
}

}  // namespace brisko
